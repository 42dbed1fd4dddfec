// TPlaneBasic: what every plane has whatever its pixel type, and
// TPlaneBasic::TCommon, the description that a plane shares with its views.
//
// A plane is a rectangle of pixels addressed by absolute line and column
// numbers, which may start anywhere, also below zero. Its description (name,
// value names and units per channel, value range, date, coordinate system,
// colour space, time stamp, lock) lives in a TCommon. Every plane carries one
// of its own; a view made by TPlane<T>::beSubPicture uses the common of its
// source instead, so renaming the view renames the source.
//
// Messages (TDelivery). A plane listens to the common in use and passes on
// what the common sends; it sends its own messages to its own receivers only
// while its send flag is on:
//   1 name, 2 value name or unit (parameter: the channel), 3 coordinate
//   system, 4 value range, 5 date               sent by the common
//   10 pixel classifier, 11 moved to another common,
//   50 geometry or memory (allocated, freed, moved, became a view)
//                                                sent by the plane
//   51 pixel values                              sent by the common through
//                                                vSendCommonMessage
// So a change of the description or of pixels reaches the receivers of every
// plane sharing the common; a change of geometry only those of that plane.
//
// Ownership. A plane owns its own common. It never owns another plane's
// common, its pixel classifier, or its coordinate system (shared and counted:
// each common counts as one user of its system).
//
// Threads. Nothing is locked except the pixels, by the polling flag lock() of
// the common, which writers of whole regions take and which does NOT nest: a
// second lock() from the same thread waits for ever. Planes may be created
// and destroyed on any thread: the instance list (vpInstances, a snapshot)
// and the user counts of coordinate systems are safe for that. Messages are
// delivered on the thread that causes them, so a plane and the objects
// connected to it belong to one thread at a time.
#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "file98/CRectangle.h"
#include "kxexception/TDelivery.h"
#include "kxexception/TTimeStamp.h"
#include "kxexception/TDateTime.h"
#include "rastrix/TPixelColorSpace.h"
#include "rastrix/TRGBPixel.h"
#include "rastrix/epixeltyp.h"

namespace Rastrix {

class TCoordinateSystem;
class TPixelKlassifikator;

class TPlaneBasic : public TDelivery {
 public:
  class TCommon : public TDelivery {
   public:
    // Never typed (0 values per pixel), the default coordinate system, the
    // default colour space, dated 0, stamped now.
    TCommon();
    // A fresh common with the content of `o` (as operator=).
    TCommon(const TCommon& o);
    // Copies date, values per pixel, name, value names, units, the range and
    // its flag, the colour space; takes o's coordinate system through
    // vSetCoordinateSystem (message 3 if it differs); stamps itself now. The
    // lock and the connections are not copied.
    TCommon& operator=(const TCommon& o);
    ~TCommon() override;

    // The stamp of the last change of pixels or description (TDelivery's).
    void setTimeStamp() { vSetTimeStamp(); }

    const std::string& rStrGetNamePic() const { return sName; }
    // Only a different name: store, stamp, message 1.
    void vSetNamePic(const std::string& name);
    int iGetValuesPerPixel() const { return iValuesPerPixel; }
    // Only a different count: store, resize the name and unit vectors; no
    // message. A negative count is ignored.
    void vSetValuesPerPixel(int n);
    // Channel `index` outside 0 .. values per pixel - 1 gives an empty text.
    const std::string& rStrGetValuePic(int index) const;
    const std::string& rStrGetUnitPic(int index) const;
    // An index outside 0 .. values per pixel - 1 is ignored. The texts are
    // compared as given with the stored ones; a different text is stored
    // after decoding UTF-8 to Latin-1 (sUtf8ToLatin1). Any change: stamp,
    // message 2 with the index.
    void vSetValueUnitPic(int index, const std::string& value, const std::string& unit);

    // Checks and stores a value range for pixels of type `e`: nothing happens
    // when all three equal the stored values; otherwise 0xe5121096 unless
    // max > min, step > 0, and min and max lie in the default range of `e`.
    // Stores, sets the range flag, message 4; no stamp.
    void vSetValueRangeMSM(eComparePixelTyp e, double min, double step, double max);
    bool bIsValueRangeSet() const { return bRangeSet; }
    double dGetMin() const { return dMin; }
    double dGetStep() const { return dStep; }
    double dGetMax() const { return dMax; }

    // Never null: the default system stands for null.
    TCoordinateSystem* pGetCoordinateSystem() const { return pCoordinateSystem; }
    // null selects the default system. A different system: the old one loses
    // a user, the new one gains one, stamp, message 3.
    void vSetCoordinateSystem(const TCoordinateSystem* p);

    TDateTime GetDateTime() const { return date; }
    // null means now. Always message 5, never a stamp.
    void vSetDateTime(const TDateTime* p);

    TPixelColorSpace& rGetPixelColorSpace() { return colorSpace; }
    const TPixelColorSpace& rGetPixelColorSpace() const { return colorSpace; }

    // The polling lock of the pixels (see the file comment).
    void lock();
    // Clears the flag and stamps.
    void unlock();
    bool isLock() const { return bLock.load(std::memory_order_acquire); }
    void vClearLock() { bLock.store(false, std::memory_order_release); }

    // The decoder of value names and units: bytes below 0x80 stand for
    // themselves; 0xB0 and 0xB2 (degree, superscript two) outside a UTF-8
    // sequence are kept as Latin-1; other bytes are read as UTF-8, and a code
    // point below 0x100 is stored as one byte, a larger one is dropped. A
    // continuation byte outside any sequence is dropped.
    static std::string sUtf8ToLatin1(const std::string& text);

   private:
    std::atomic<bool> bLock{false};
    TDateTime date;
    int iValuesPerPixel = 0;  // 0: never given a type
    std::string sName;
    std::vector<std::string> valueNames;
    std::vector<std::string> units;
    bool bRangeSet = false;
    double dMin = 0.0;
    double dStep = 0.0;
    double dMax = 0.0;
    TCoordinateSystem* pCoordinateSystem;
    TPixelColorSpace colorSpace;
  };

  // An invalid plane with its own common, listed in vpInstances, dated now,
  // bound to the default coordinate system and pixel classifier.
  TPlaneBasic();
  // A fresh plane (own common, no pixels) carrying o's description.
  TPlaneBasic(const TPlaneBasic& o);
  // The description only: o's common is assigned into the common in use (so
  // assigning to a view renames its source), and the pixel classifier pointer
  // is copied.
  TPlaneBasic& operator=(const TPlaneBasic& o);
  ~TPlaneBasic() override;

  // To the plane's own receivers, only while the send flag is on.
  void vSendMessage(unsigned long a, unsigned long b) override;
  // From the common in use: passed on to the own receivers, true. Else false.
  bool bReceiveMessage(const TDelivery* sender, unsigned long a, unsigned long b) override;

  // The pixel as a double; 0 in the base.
  virtual double getDoublePixelLC(int line, int column) const;
  // File operations of the typed pictures; on a bare TPlaneBasic they raise
  // 0xe0721098.
  virtual void writeFile(const char* name, bool overwrite) const;
  virtual void readFile(const char* name, bool check);
  virtual void insertFile(const char* name);
  virtual const char* getFileExtension();
  virtual void vGetFileExtension(char* out);
  // Back to the own common (message 11), no pixels, all numbers 0, the lock
  // cleared, not modified.
  virtual void attrib2Zero();

  bool isValid() const { return bValid; }
  int getLines() const { return iLines; }
  int getColumns() const { return iColumns; }
  int getFirstLine() const { return iFirstLine; }
  int getFirstColumn() const { return iFirstColumn; }
  int getLineDistance() const { return iLineDistance; }
  int getLastLine() const { return iFirstLine + (iLines - 1); }
  int getLastColumn() const { return iFirstColumn + (iColumns - 1); }
  CRectangle getExtension() const { return CRectangle(iFirstLine, getLastLine(), iFirstColumn, getLastColumn()); }
  bool bIsExtern() const { return bExtern; }
  bool bIsInterlaced() const { return bInterlaced; }

  // Checks an area against the plane, in this order: valid (0xe7021004),
  // l1 >= first line (0xe712101c), l2 <= last line (0xe722101d), l1 <= l2
  // (0xe752101e), c1 >= first column (0xe712101f), c2 <= last column
  // (0xe7221020), c1 <= c2 (0xe7521021).
  void proofArea(int l1, int l2, int c1, int c2) const;
  // The pixel type of the actual class; a bare TPlaneBasic raises 0xe7021097.
  virtual eComparePixelTyp eGetPicturePT() const;
  bool bIsColorPic() const { return iGetValuesPerPixel() == 3; }

  // The range for this plane's pixel type (TCommon::vSetValueRangeMSM).
  void setValueRangeMSM(double min, double step, double max);
  // The stored range when one was set, else the default of the pixel type;
  // null pointers are skipped. True when the stored range was used.
  bool getValueRangeMSM(double* min, double* step, double* max) const;

  void setNamePic(const std::string& name) { pCommon->vSetNamePic(name); }
  const std::string& rStrGetNamePic() const { return pCommon->rStrGetNamePic(); }
  void setValueUnitPic(int index, const std::string& value, const std::string& unit) {
    pCommon->vSetValueUnitPic(index, value, unit);
  }
  const std::string& rStrGetValuePic(int index) const { return pCommon->rStrGetValuePic(index); }
  const std::string& rStrGetUnitPic(int index) const { return pCommon->rStrGetUnitPic(index); }
  void setValuesPerPixel(int n) { pCommon->vSetValuesPerPixel(n); }
  int iGetValuesPerPixel() const { return pCommon->iGetValuesPerPixel(); }
  // A colour plane takes value name and unit of its three channels from its
  // colour space (for the space of uGetToFlag), then stamps; a grey plane
  // does nothing.
  void vSetValueUnitPicFromColorSpace();
  TPixelColorSpace& rGetPixelColorSpace() { return pCommon->rGetPixelColorSpace(); }
  const TPixelColorSpace& rGetPixelColorSpace() const { return pCommon->rGetPixelColorSpace(); }

  TCoordinateSystem* pGetCoordinateSystem() const { return pCommon->pGetCoordinateSystem(); }
  void SetCoordinateSystem(const TCoordinateSystem* p) { pCommon->vSetCoordinateSystem(p); }

  // On the plane itself, not on the common. A change stamps and sends 10.
  TPixelKlassifikator* pGetPixelKlassifikator() const { return pKlassifikator; }
  void SetPixelKlassifikator(TPixelKlassifikator* p);

  // The common's stamp := now.
  void setTimeStamp() { pCommon->setTimeStamp(); }
  // The later of the common's stamp and the coordinate system's.
  Process::TTimeStamp getTimeStamp() const;
  TDateTime GetDateTime() const { return pCommon->GetDateTime(); }
  void vSetDateTime(const TDateTime* p) { pCommon->vSetDateTime(p); }
  // The common's stamp is later than the moment of the last save or load.
  bool bIsModified() const { return pCommon->rGetTimeStamp() > savedStamp; }
  void vSetNotModified() { savedStamp.set(); }
  void vSetLastFileName(const char* name) { sLastFileName = name ? name : ""; }
  const char* cpGetLastFileName() const { return sLastFileName.c_str(); }

  const TCommon* pGetpCommon() const { return pCommon; }
  TCommon* pGetpCommon() { return pCommon; }
  // Uses `p` as the common (null: the own one), listening to it. Sends no
  // message of its own.
  void vSetpCommon(const TCommon* p);

  bool bGetSendMessage() const { return bSendMessage; }
  void vSetSendMessage(bool b) { bSendMessage = b; }
  // vSendMessage on the common in use, only while this plane's send flag is on.
  void vSendCommonMessage(unsigned long a, unsigned long b);

  void lock() { pCommon->lock(); }
  void unlock() { pCommon->unlock(); }
  bool isLock() const { return pCommon->isLock(); }

  // Per type the smaller and the larger of two pixels; colour pixels by
  // component, so the result may be a pixel that neither operand was.
  static unsigned char min(const unsigned char& a, const unsigned char& b) { return b < a ? b : a; }
  static unsigned short min(const unsigned short& a, const unsigned short& b) { return b < a ? b : a; }
  static float min(const float& a, const float& b) { return b < a ? b : a; }
  static int min(const int& a, const int& b) { return b < a ? b : a; }
  static TRGBPixel min(const TRGBPixel& a, const TRGBPixel& b);
  static TRGBFloatPixel min(const TRGBFloatPixel& a, const TRGBFloatPixel& b);
  static unsigned char max(const unsigned char& a, const unsigned char& b) { return b > a ? b : a; }
  static unsigned short max(const unsigned short& a, const unsigned short& b) { return b > a ? b : a; }
  static float max(const float& a, const float& b) { return b > a ? b : a; }
  static int max(const int& a, const int& b) { return b > a ? b : a; }
  static TRGBPixel max(const TRGBPixel& a, const TRGBPixel& b);
  static TRGBFloatPixel max(const TRGBFloatPixel& a, const TRGBFloatPixel& b);

  // Handles of the image library (kxutils) onto this plane. The caller
  // deletes them: ulImage_DeleteHandle, ulCoordinatesystem_DeleteHandle,
  // ulColorSpace_DeleteHandle.
  //   image: looks onto the plane's own pixels, no copy; it must not outlive
  //     the pixel memory. Invalid plane: 0xe7021004; interlaced memory, or a
  //     failure of the library: 0xe7021097.
  //   coordinate system: name, value names and units, axes, scaling.
  //   colour: null for a grey plane, else destination and reference white.
  void* vpCreateIMAGE_HANDLE() const;
  void* vpCreateCOORDINATESYSTEM_HANDLE() const;
  void* vpCreateCOLOR_HANDLE() const;

  // Every living plane, in order of creation. Not locked.
  static std::vector<TPlaneBasic*> vpInstances();
  // Whether `p` is a living plane (linear search).
  static bool bIsValid(const TPlaneBasic* p);

 protected:
  // Leaves the common in use for the own one and listens to it; no message.
  void _vDetachToOwnCommon();
  // Sets the send flag off for the life of the guard, then restores it.
  class TSendOff {
   public:
    explicit TSendOff(TPlaneBasic& p) : p_(p), old_(p.bSendMessage) { p.bSendMessage = false; }
    ~TSendOff() { p_.bSendMessage = old_; }
    TSendOff(const TSendOff&) = delete;
    TSendOff& operator=(const TSendOff&) = delete;

   private:
    TPlaneBasic& p_;
    bool old_;
  };

  bool bValid = false;
  int iLines = 0;
  int iColumns = 0;
  int iFirstLine = 0;
  int iFirstColumn = 0;
  int iLineDistance = 0;
  bool bExtern = false;      // the pixel memory is not the plane's
  bool bInterlaced = false;  // extern memory in two blocks: even lines, odd lines
  std::string sLastFileName;
  Process::TTimeStamp savedStamp;
  bool bSendMessage = true;
  TCommon ownCommon;
  TCommon* pCommon;  // never null
  TPixelKlassifikator* pKlassifikator;
};

}  // namespace Rastrix
