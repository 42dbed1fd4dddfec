// The list of measuring regions drawn on a picture: points, rectangles,
// polygons, circles, lines, polylines and groups. Each object is a typed
// point list; beside it the list keeps, with the same index, its place in
// the tree of groups, its flags, its signature, its name, its cached region
// and its label pictures. Removing an object shifts the later ones, and all
// the parallel members follow.
//
// Messages (TDelivery, while enabled): 1 all changed, 3 selection changed,
// 4 object changed (index), 5 object erased (index), 6 structure changed.
#pragma once

#include <string>
#include <vector>

#include "kxexception/TDelivery.h"
#include "kxexception/TFormatNumber.h"
#include "kxexception/TSignatur.h"
#include "object98/TLabelPicAssigner.h"
#include "object98/TOPointList.h"
#include "object98/TRLCArray.h"
#include "object98/TRelationList.h"
#include "object98/TVector98.h"

namespace Rastrix {
class TCoordinateSystem;
class TPlaneBasic;
}  // namespace Rastrix

// The points of all objects.
template <class T>
class TOPointArray : public TDelivery {
 public:
  explicit TOPointArray(int initialCapacity = 10) : Lists(initialCapacity) {}
  int size() const { return Lists.size(); }
  TOPointList<T>& operator[](int i) { return Lists[i]; }
  const TOPointList<T>& operator[](int i) const { return Lists[i]; }
  TVector98<TOPointList<T>>& rGetLists() { return Lists; }
  const TVector98<TOPointList<T>>& rGetLists() const { return Lists; }

 private:
  TVector98<TOPointList<T>> Lists;
};

// The flag words of the objects, and the word new objects get.
class TOFlagList : public TDelivery {
 public:
  enum : unsigned {
    fSelected = 0x00000001,
    fNoLabel = 0x00000002,
    fNameByHand = 0x00000004,
    fNoArea = 0x00000020,
    fNoSelect = 0x00000040,
    fNoObjectMove = 0x00000080,
    fNoObjectDelete = 0x00000100,
    fNoObjectDuplicate = 0x00000200,
    fNoObjectAccess = 0x00000400,
    fNoPointMove = 0x00000800,
    fNoPointInsert = 0x00001000,
    fNoPointDelete = 0x00002000,
    fNoPointAccess = 0x00004000,
    fNoTopRightLabel = 0x00008000,
    fNotInGroup = 0x01000000,
    fSpecial = 0x02000000,
  };

  explicit TOFlagList(int initialCapacity = 10) : Words(initialCapacity) {}
  int size() const { return Words.size(); }
  unsigned operator[](int i) const { return Words[i]; }
  TVector98<unsigned>& rGetWords() { return Words; }
  const TVector98<unsigned>& rGetWords() const { return Words; }
  unsigned StandardFlag = 0;

  bool isSelected(int i) const { return (Words[i] & fSelected) != 0; }
  // Refused (false) while any of 0x2000440 is set.
  bool selectObject(int i);
  void unselectObject(int i);
  void selectAll();
  void unselectAll();
  int countSelObjects() const;
  // -1 when there is none.
  int iGetFirstSelected() const;
  int iGetNextSelected(int after) const;

  // Each setter clears its bit for true ("allowed", "shown") and sets it for
  // false.
  void vSetDrawLabel(int i, bool b) { _set(i, fNoLabel, b); }
  bool bGetDrawLabel(int i) const { return !(Words[i] & fNoLabel); }
  bool bIsAutoName(int i) const { return !(Words[i] & fNameByHand); }
  void vSetAutoName(int i, bool b) { _set(i, fNameByHand, b); }
  void vSetDrawArea(int i, bool b) { _set(i, fNoArea, b); }
  bool bGetDrawArea(int i) const { return !(Words[i] & fNoArea); }
  void vSetSelectable(int i, bool b) { _set(i, fNoSelect, b); }
  void vSetObjectMove(int i, bool b) { _set(i, fNoObjectMove, b); }
  void vSetObjectDelete(int i, bool b) { _set(i, fNoObjectDelete, b); }
  void vSetObjectDuplicate(int i, bool b) { _set(i, fNoObjectDuplicate, b); }
  void vSetObjectAccess(int i, bool b) { _set(i, fNoObjectAccess, b); }
  void vSetPointMove(int i, bool b) { _set(i, fNoPointMove, b); }
  void vSetPointInsert(int i, bool b) { _set(i, fNoPointInsert, b); }
  void vSetPointDelete(int i, bool b) { _set(i, fNoPointDelete, b); }
  void vSetPointAccess(int i, bool b) { _set(i, fNoPointAccess, b); }
  void vSetTopRightLabel(int i, bool b) { _set(i, fNoTopRightLabel, b); }
  void vSetInGroup(int i, bool b) { _set(i, fNotInGroup, b); }
  void vSetSpecial(int i, bool b) { _set(i, fSpecial, !b); }
  void vSetAllDrawLabel(bool b) { _setAll(fNoLabel, b); }
  void vSetAllDrawArea(bool b) { _setAll(fNoArea, b); }
  void vSetAllObjectMove(bool b) { _setAll(fNoObjectMove, b); }
  void vSetAllObjectDelete(bool b) { _setAll(fNoObjectDelete, b); }
  void vSetAllPointMove(bool b) { _setAll(fNoPointMove, b); }
  // Not implemented: 0xe0722051.
  void vSetDrawLines(int i, bool b);
  bool bGetDrawLines(int i) const;
  void vSetDrawCorners(int i, bool b);
  bool bGetDrawCorners(int i) const;
  // Message 2 if a bit of the top byte changed, 1 for 0x00fffffe, 3 for bit
  // 0, each with the index.
  void vSetFlags(int i, unsigned word);

 private:
  void _set(int i, unsigned mask, bool allowed) { vSetFlags(i, allowed ? Words[i] & ~mask : Words[i] | mask); }
  void _setAll(unsigned mask, bool allowed) {
    for (int i = 0; i < size(); ++i) _set(i, mask, allowed);
  }
  TVector98<unsigned> Words;
};

class TObjectList98 : public TDelivery {
 public:
  static constexpr const char* cpObjectList = "TObjectList";

  explicit TObjectList98(int initialCapacity = 10);
  TObjectList98(const TObjectList98& o);
  TObjectList98& operator=(const TObjectList98& o);
  ~TObjectList98() override;

  // Whether the pointer is a live list.
  static bool bIsValid(const TObjectList98* list);

  int size() const { return Points.size(); }
  // 0xe7422040 at or beyond size().
  TOPointList<int>& operator[](int i);
  const TOPointList<int>& operator[](int i) const;
  TOFlagList& rGetFlagList() { return Flags; }
  const TOFlagList& rGetFlagList() const { return Flags; }
  TRelationList& rGetRelationList() { return Relations; }
  const TRelationList& rGetRelationList() const { return Relations; }
  TRLCArray& rGetRLCArray(int i);
  TSignatur& rGetSignatur(int i);
  TLabelPicAssigner& rGetLabelPicAssigner() { return Labels; }
  // The label plane of object i for a picture, allocated to the object's
  // extent.
  Rastrix::TPlane<unsigned char>& rGetLabelPic(const Rastrix::TPlaneBasic* picture, int i, bool alloc, bool clear);
  TKlassifikator2Color& rGetClassColor(const Rastrix::TPlaneBasic* picture, int i);
  bool bIsGroup(int i) const;
  std::unique_ptr<bool[]> getDescendants(int i) const;

  // Adds the object with no father, a new signature, an empty region, the
  // standard flag, an automatic name and a label region; message 4.
  int append(const TOPointList<int>& list);
  // Without descendants the sons lose their father (message 5, then 6 if
  // there were sons) and the former father's border is recalculated; with
  // them the object and all its descendants go, highest index first.
  void erase(int i, bool withDescendants);
  void clear();
  void vClear() { clear(); }

  // Transformations; a group moves and turns its sons, then its border
  // follows them. Each changed object gets its time stamp and message 4.
  void move(int i, int dx, int dy);
  void vMoveSelected(int dx, int dy);
  // Degrees about (x, y); picture lines run downwards.
  void rotate(int i, int x, int y, double angle);
  // A copy of the object (of a group: of its tree) moved by (dx, dy);
  // returns the new index.
  int copy(int i, int dx, int dy);
  // The selected objects become sons of a new group of `typ` (11 to 13),
  // whose points are their common border; nothing without selection.
  void vCreateGroup(TOPL_Typ typ);
  // The tree of object i appended to `other` (or this list); returns the
  // new index of its root.
  int vCopyTree(int i, TObjectList98& other) const;
  // The selected objects with their trees into `other`.
  void vCopySelected2Other(TObjectList98& other) const;
  void vCopyAll2Clipboard() const;
  void vCopySelected2Clipboard() const;
  // Appends what the clipboard holds.
  void vCopyAllFromClipboard();
  static bool bHaveClipboardData();
  // Moves object `from` to index `to` (to < from) in every member.
  void vReduceIndexFromTo(int from, int to);
  TObjectList98& operator+=(const TObjectList98& o);
  // A group's border recomputed from its sons (the bounding rectangle),
  // upwards through its fathers.
  void childHasMoved(int group);
  // The bounding box of the selected objects as four corners.
  TOPointList<int> borderSelected() const;
  // The region of the selected objects, or-ed.
  void vGetSelectedRLC(TRLCArray& out);

  // Names: the name set by hand, else the object's number among the
  // objects without father, or among its brothers, from 1; the full name
  // joins the fathers' names with points ("1.2").
  std::string sGetSingleObjectName(int i) const;
  std::string sGetFullObjectName(int i) const;
  void vSetObjectName(int i, const char* name);
  bool bIsAutoName(int i) const;
  void vSetAllAutoName();

  // Time stamps: of an object (setting one also sets its fathers'), of the
  // list.
  const Process::TTimeStamp& getTimeStamp(int i) const;
  void setTimeStamp(int i);
  const Process::TTimeStamp& getAllTimeStamp() const { return rGetTimeStamp(); }
  void setAllTimeStamp();
  // The newer of the list's and the picture's stamp.
  Process::TTimeStamp getAllPicTimeStamp(const Rastrix::TPlaneBasic* picture) const;
  void vSetSonsTimeStamp(int i);
  bool bIsModified() const { return rGetTimeStamp() > saved_; }
  void vSetNotModified() { saved_ = rGetTimeStamp(); }

  // Measures through a coordinate system (null: pixels): a line's length and
  // the height and width of its extent; a contour's circumference and area;
  // the extent's width and height; a circle's diameter, area and
  // circumference.
  void vCalculateLine(int i, const Rastrix::TCoordinateSystem* cs, double& length, double& height,
                      double& width) const;
  void vCalculateLineAndArea(int i, const Rastrix::TCoordinateSystem* cs, double& circumference,
                             double& area) const;
  void vCalculateWidthAndHeight(int i, const Rastrix::TCoordinateSystem* cs, double& width, double& height) const;
  void vCalculateCircle(int i, const Rastrix::TCoordinateSystem* cs, double& diameter, double& area,
                        double& circumference) const;
  // Status line texts with the measures of a coordinate system (null: pixels).
  const char* cpGetObjectInfo(int i, const Rastrix::TCoordinateSystem* cs) const;
  const char* cpGetPointInfo(int i, int point, const Rastrix::TCoordinateSystem* cs) const;
  // The text of a point list being edited (`now`, not in the list) as
  // cpGetObjectInfo gives it, with the move of its first point from the
  // list it was (`before`): "  dx=...  dy=...".
  const char* cpGetObjectInfo2(const TOPointList<int>& now, const TOPointList<int>& before,
                               const Rastrix::TCoordinateSystem* cs) const;
  const char* cpGetLineInfo(int i, int line, const Rastrix::TCoordinateSystem* cs) const;

  // Files: ".oa" text; read also takes ".prt" (old protocols).
  void write(const char* file) const;
  void read(const char* file, bool bAppend);
  void vReadOA(const char* file, bool bAppend);
  void vReadPRT(const char* file, bool bAppend);
  // The table of objects as text: to a file, or to the clipboard for null.
  void vExport(const char* name) const;
  std::string vContent2Table() const;
  // Marks the helpers (a son of an object that is no group) and the special
  // objects.
  std::vector<bool> vFindSpecialObjects() const;

  // The region of object i through the cache: reused while the cached
  // array is not older than the object, else computed (groups from their
  // sons) and stored.
  const TRLCArray& rGetRegion(int i);

  void vEnableMessages(bool b) { bMessages = b; }
  bool bMessagesEnabled() const { return bMessages; }
  bool bReceiveMessage(const TDelivery* sender, unsigned long a, unsigned long b) override;

  // The text of the ".oa" form, and reading it back (for files and the
  // clipboard).
  std::string sWriteOA() const;
  void vReadOAText(const std::string& text, bool bAppend);

 private:
  void _check(int i) const;
  void _send(unsigned long code, unsigned long arg);
  void _connect();
  void _moveTree(int i, int dx, int dy);
  // The borders of the groups in and above object i's tree, after it moved.
  void _vBordersAfter(int i);
  void _rotateOne(int i, int x, int y, double c, double s);
  void _calcGroup(int i, TRLCArray& out);
  void _eraseOne(int i);

  TOPointArray<int> Points;
  TRelationList Relations;
  TOFlagList Flags;
  TVector98<TSignatur> Signatures;
  std::vector<std::string> Names;
  TLabelPicAssigner Labels;
  TVector98<TRLCArray> Regions;
  TFormatNumber Format{4};
  bool bMessages = true;
  Process::TTimeStamp saved_;
};
