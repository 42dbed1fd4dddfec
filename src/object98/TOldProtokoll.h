// Protocol files of the older generation (".prt"): TIFF-structured files
// whose directory 0 describes the capture, directory 1 holds a comment and
// directory 2 the regions, as rectangles and lines (tag 4121) or as a point
// array text (tag 4126). Reading brings the regions into an object list,
// with OR groups for the group indices they carry.
#pragma once

#include <string>
#include <vector>

#include "file98/CRectangle.h"
#include "rastrix/CTiff.h"

class TObjectList98;

class TOldProtokoll : public CRTiff {
 public:
  enum : uint16_t {
    tagComment = 4115,
    tagRectangles = 4121,
    tagPointLists = 4125,
    tagPointArray = 4126,
    tagLevels = 4130,
    tagDataOffset = 0x1029,
    tagDataExtent = 0x102a,
    tagCaptureTyp = 4142,
  };

  // Clears the list and fills it with the regions of directory 2; 0xe332204e
  // for the point-list form and for a broken text.
  void vGetRegions(TObjectList98* list);
  // The capture type (tag 4142) up to its first comma, with
  // " -F +D +DL +L +S +GN"; empty without the tag.
  void vGetCaptureTyp(char* out, std::size_t size = 256) const;
  // The text of tag 4142 behind its first comma.
  void vGetCaptureParam(char* out, std::size_t size = 256) const;
  // Lines and columns of directory 0.
  void vGetPictureSize(long& lines, long& columns) const;
  // The area of the data: the whole picture, or first line and column from
  // tag 0x1029 and lines and columns from tag 0x102a (shorts).
  void vGetDataSize(CRectangle& r) const;
  const char* cpGetComment();
  // The luminance levels of tag 4130: numbers separated by blanks.
  void vReadLuminanceLevel();
  // Level i (0 outside); `log` gives its decimal logarithm.
  double dGetLevel(int i, bool log) const;
  // The group index region i carried (-1 none), after vGetRegions.
  int iGetObject(int i) const;
  bool bIsHeader() const { return CountIFD() > 0; }
  bool bIsComment() const { return _pTag(1, tagComment) != nullptr; }
  bool bIsRegion() const;
  bool bIsPicture() const;

 private:
  const CTag* _pTag(short ifd, uint16_t tag) const;
  static std::string _text(const CTag& t);
  std::string comment_;
  std::vector<double> levels_;
  std::vector<int> groups_;
};
