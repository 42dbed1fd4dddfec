// TDelivery: the base of every object that sends or receives change messages.
//
// A sender keeps its receivers, a receiver its senders; both links are kept on
// both sides, so destroying either side disconnects it from the other and no
// receiver is ever called through a dangling pointer. A copy (constructor or
// assignment) is connected to nobody; assignment keeps the target's own
// connections and copies only the time stamp.
//
// vSendMessage calls bReceiveMessage(this, a, b) on every receiver connected
// when the send started; a receiver disconnected by an earlier handler of the
// same send is skipped. Not thread safe: connect, send and destroy on one thread.
#pragma once

#include <vector>

#include "kxexception/TTimeStamp.h"

class TDelivery {
 public:
  TDelivery() = default;
  TDelivery(const TDelivery& o) : stamp_(o.stamp_) {}
  TDelivery& operator=(const TDelivery& o) {
    stamp_ = o.stamp_;
    return *this;
  }
  virtual ~TDelivery();

  // Listens to `sender` (and `sender` sends to this).
  virtual void vConnectSender(TDelivery* sender);
  // Sends to `receiver` (and `receiver` listens to this).
  virtual void vConnectReceiver(TDelivery* receiver);
  virtual void vDisconnectSender(TDelivery* sender);
  virtual void vDisconnectReceiver(TDelivery* receiver);
  virtual void vSendMessage(unsigned long a, unsigned long b);
  // Answers true when `sender` is one this object listens to.
  virtual bool bReceiveMessage(const TDelivery* sender, unsigned long a, unsigned long b);

  const Process::TTimeStamp& rGetTimeStamp() const { return stamp_; }
  void vSetTimeStamp() { stamp_.set(); }
  void vSetTimeStamp(const Process::TTimeStamp& t) { stamp_ = t; }

  bool bIsSender(const TDelivery* d) const;
  bool bIsReceiver(const TDelivery* d) const;
  std::size_t uGetReceiverCount() const { return receivers_.size(); }
  std::size_t uGetSenderCount() const { return senders_.size(); }

 private:
  std::vector<TDelivery*> senders_;
  std::vector<TDelivery*> receivers_;
  Process::TTimeStamp stamp_;
};
