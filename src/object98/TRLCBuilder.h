// TRLCArray::TBuilder: makes the lines and run blocks of a new region (private
// to the module: the array's own operations and TPicture2RLC).
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <vector>

#include "object98/TRLCArray.h"

// Lines are added one after the other: pRoom(n) gives room for at most n runs
// of the next line, vEndLine closes it with the count actually written. The
// runs go into standard blocks of kBlockRuns runs, larger only for a single
// larger line. `room`, an upper bound of all runs to come, keeps the block of
// a small region small. A block of another size is cut to what it holds when
// the next one starts, and so is the last block; a full standard block keeps
// its unused end (less than the room of the line that did not fit), so that
// it can be reused. The lines get their pointers only in vFinish, after the
// last cut.
class TRLCArray::TBuilder {
 public:
  TBuilder(int lines, std::size_t room)
      : roomLeft_(room), metaSize_(lines > 0 ? static_cast<std::size_t>(lines) : 0),
        meta_(new TMeta[metaSize_]) {}  // filled by vEndLine, not before

  TRLC* pRoom(std::size_t n) {
    reserved_ = n;
    if (cap_ - used_ >= n) [[likely]]
      return blocks_.empty() ? nullptr : blocks_.back().get() + used_;
    return pNewBlock(n);
  }

  void vEndLine(int count, signed char state) {
    if (next_ == metaSize_) vGrowMeta();
    TMeta& m = meta_[next_++];
    m.count = count;
    m.state = state;
    if (count > 0) {
      m.block = static_cast<uint32_t>(blocks_.size() - 1);
      m.offset = used_;
      used_ += static_cast<std::size_t>(count);
    }
    roomLeft_ -= std::min(roomLeft_, reserved_);
    reserved_ = 0;
  }

  int lines() const { return static_cast<int>(next_); }
  int count(int line) const { return meta_[static_cast<std::size_t>(line)].count; }

  // Hands the lines first..last to `a` as its content (lines outside that
  // range must hold no runs). The box is the caller's.
  void vFinish(TRLCArray& a, int first, int last) {
    vCut();
    std::vector<TRLCLine> lines(last >= first ? static_cast<std::size_t>(last - first + 1) : 0);
    TRLCLine* l = lines.data();
    for (int i = first; i <= last && static_cast<std::size_t>(i) < next_; ++i, ++l) {
      const TMeta& m = meta_[static_cast<std::size_t>(i)];
      if (m.count > 0) {  // a fresh line borrows its runs
        l->Begin = blocks_[m.block].get() + m.offset;
        l->Size = m.count;
        l->State = m.state;
      }
    }
    a.Lines = std::move(lines);  // the old lines first: they may point into the old blocks
    a.Pool = std::move(blocks_);
  }

 private:
  struct TMeta {
    std::size_t offset;
    uint32_t block;
    int count;
    signed char state;
  };

  void vGrowMeta() {
    const std::size_t size = metaSize_ + metaSize_ / 2 + 16;
    std::unique_ptr<TMeta[]> grown(new TMeta[size]);
    std::copy(meta_.get(), meta_.get() + next_, grown.get());
    meta_ = std::move(grown);
    metaSize_ = size;
  }

  [[gnu::noinline]] TRLC* pNewBlock(std::size_t n) {
    if (n == 0) return nullptr;
    if (blocks_.empty() || !blocks_.back().get_deleter().bStandard || used_ == 0) vCut();
    const std::size_t size = std::max(n, std::min(kBlockRuns, roomLeft_));
    blocks_.push_back(TRLCArray::_NewBlock(size));
    cap_ = size;
    used_ = 0;
    return blocks_.back().get();
  }
  // Gives back the unused end of the current block (which is then no
  // standard block any more).
  void vCut() {
    if (blocks_.empty() || used_ == cap_) return;
    if (used_ == 0) {
      blocks_.pop_back();
    } else if (void* q = std::realloc(blocks_.back().get(), used_ * sizeof(TRLC))) {
      (void)blocks_.back().release();
      blocks_.back().reset(static_cast<TRLC*>(q));
      blocks_.back().get_deleter().bStandard = false;
    }
    cap_ = used_;
  }

  std::vector<TRunBlock> blocks_;
  std::size_t cap_ = 0;   // runs the current block can hold
  std::size_t used_ = 0;  // runs it holds
  std::size_t roomLeft_;
  std::size_t reserved_ = 0;
  std::size_t metaSize_;  // entries of meta_
  std::unique_ptr<TMeta[]> meta_;
  std::size_t next_ = 0;  // lines ended so far
};
