#include "rastrix/CTiff.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <set>

#include "kxexception/KxError.h"
#include "platform/AtomicFile.h"

namespace TIFF {

const char* cpTagName(uint16_t tag) {
  static const struct {
    uint16_t tag;
    const char* name;
  } names[] = {
      {0xFE, "NewSubfileTyp"}, {0xFF, "SubFileTyp"}, {0x100, "ImageWidth"}, {0x101, "ImageLength"},
      {0x102, "BitsPerSample"}, {0x103, "Compression"}, {0x106, "PhotometricInterpretation"}, {0x107, "Tresholding"},
      {0x108, "CellWidth"}, {0x109, "CellLength"}, {0x10A, "FillOrderTag"}, {0x10D, "DocumentName"},
      {0x10E, "ImageDescription"}, {0x10F, "ScannerMake"}, {0x110, "ScannerModel"}, {0x111, "StripOffsets"},
      {0x112, "Orientation"}, {0x115, "SamplesPerPixel"}, {0x116, "RowsPerStrip"}, {0x117, "StripByteCounts"},
      {0x118, "MinSampleValue"}, {0x119, "MaxSampleValue"}, {0x11A, "XResolution"}, {0x11B, "YResolution"},
      {0x11C, "PlanarConfiguration"}, {0x11D, "PageName"}, {0x11E, "XPosition"}, {0x11F, "YPosition"},
      {0x120, "FreeOffsets"}, {0x121, "FreeByteCounts"}, {0x122, "GrayResponseUnit"}, {0x123, "GrayResponseCurve"},
      {0x124, "Group3Options"}, {0x125, "Group4Options"}, {0x128, "ResolutionUnit"}, {0x129, "PageNumber"},
      {0x12C, "ColorResponseUnit"}, {0x12D, "ColorResponseCurves"}, {0x131, "Software"}, {0x132, "DateTime"},
      {0x13B, "Artist"}, {0x13C, "HostComputer"}, {0x13D, "Predictor"}, {0x13E, "WhitePoint"},
      {0x13F, "PrimaryCromaticities"}, {0x140, "ColorMap"}, {0x1001, "GreyNBytes"}, {0x1002, "GreyNTyp"},
      {0x1003, "MacroPixSizeX"}, {0x1004, "MacroPixSizeY"}, {0x1005, "MacroPixArcX"}, {0x1006, "MacroPixArcY"},
      {0x1007, "Lmin"}, {0x1008, "Lmax"}, {0x100A, "ExpandLines"}, {0x100B, "ExpandColumns"}, {0x100C, "GridLines"},
      {0x100D, "GridColumns"}, {0x100E, "GridStepY"}, {0x100F, "GridStepX"}, {0x1010, "Datum"}, {0x1011, "Uhrzeit"},
      {0x1012, "Firma"}, {0x1013, "Kommentar"}, {0x1014, "Kamera"}, {0x1015, "Framegrabber"}, {0x1016, "Leubild"},
      {0x1017, "Bearbeiter"}, {0x1018, "Protokoll"}, {0x1019, "CRectangle"}, {0x101A, "CLeudichtData"},
      {0x101B, "FirstLine"}, {0x101C, "FirstColumn"}, {0x101D, "CPointList"}, {0x101E, "CPointArray"},
      {0x101F, "CLeudichtDataContainer"}, {0x1020, "ColorPalette (Grid-Window)"},
      {0x1021, "LogarithmicView (Grid-Window)"}, {0x1022, "CalcMinMax (Grid-Window)"},
      {0x1023, "MinValue (Grid-Window)"}, {0x1024, "MaxValue (Grid-Window)"}, {0x1025, "ZoomFactor (Grid-Window)"},
      {0x1026, "ScrollerX (Grid-Window)"}, {0x1027, "ScrollerY (Grid-Window)"}, {0x1028, "IsoPalette (GridWindow)"},
      {0x1029, "DataSizeLeft"}, {0x102A, "DataSizeRight"}, {0x102B, "DataSizeTop"}, {0x102C, "DataSizeBottom"},
      {0x102D, "Version"}, {0x102E, "Capture"}, {0x102F, "ValueUnit"}, {0x1030, "CoordinateSystem"}};
  for (const auto& n : names)
    if (n.tag == tag) return n.name;
  return "Unknown or no Tag !";
}

const char* cpCompressionName(uint16_t value) {
  switch (value) {
    case 1: return "No Compression";
    case 2: return "Modified CCIT/3 1D";
    case 3: return "FAX CCIT Group3 kompatible";
    case 4: return "FAX CCIT Group4 kompatible";
    case 5: return "LZW Compression";
    case 32771: return "No Compression WordAlignment";
    case 32773: return "Pack Bit Compression";
    case 32767: return "Unknown Compression Algorithm";
    default: return "Fehlerhafte Angabe";
  }
}

}  // namespace TIFF

using namespace kxtiff;

namespace {

unsigned long fail(unsigned long code, const char* text = nullptr) {
  if (text)
    _TKxSetLastErrorLS(static_cast<long>(code), KX_FILE, __LINE__, text);
  else
    _TKxSetLastErrorL(static_cast<long>(code), KX_FILE, __LINE__);
  return code;
}

uint32_t typeSize(uint16_t type) {
  static const uint32_t sizes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8};
  return type < 13 ? sizes[type] : 0;
}

void put16(std::vector<uint8_t>& o, uint16_t v) {
  o.push_back(static_cast<uint8_t>(v));
  o.push_back(static_cast<uint8_t>(v >> 8));
}
void put32(std::vector<uint8_t>& o, uint32_t v) {
  for (int i = 0; i < 4; ++i) o.push_back(static_cast<uint8_t>(v >> (8 * i)));
}
void set32(std::vector<uint8_t>& o, std::size_t at, uint32_t v) {
  for (int i = 0; i < 4; ++i) o[at + static_cast<std::size_t>(i)] = static_cast<uint8_t>(v >> (8 * i));
}
uint16_t get16(const uint8_t* p) { return static_cast<uint16_t>(p[0] | (p[1] << 8)); }
uint32_t get32(const uint8_t* p) {
  return static_cast<uint32_t>(p[0]) | (static_cast<uint32_t>(p[1]) << 8) | (static_cast<uint32_t>(p[2]) << 16) |
         (static_cast<uint32_t>(p[3]) << 24);
}

bool readAt(int fd, uint64_t at, void* to, std::size_t n) {
  std::size_t done = 0;
  while (done < n) {
    const ssize_t r = ::pread(fd, static_cast<char*>(to) + done, n - done, static_cast<off_t>(at + done));
    if (r < 0 && errno == EINTR) continue;
    if (r <= 0) return false;
    done += static_cast<std::size_t>(r);
  }
  return true;
}

// A tag from its type and the bytes of its value; inline when they fit.
CTag makeTag(uint16_t tag, uint16_t type, uint32_t count, std::vector<uint8_t> data) {
  CTag t;
  t.tag = tag;
  t.type = type;
  t.count = count;
  t.data = std::move(data);
  if (t.data.size() <= 4) {
    uint8_t b[4] = {};
    std::memcpy(b, t.data.data(), t.data.size());
    t.value = get32(b);
  }
  return t;
}

}  // namespace

// ---------------------------------------------------------------- tags

uint64_t CTag::uByteSize() const { return static_cast<uint64_t>(count) * typeSize(type); }

uint32_t CTag::uGetValue(uint32_t i) const {
  const uint32_t s = typeSize(type);
  if (s == 0 || static_cast<uint64_t>(i + 1) * s > data.size()) return 0;
  const uint8_t* p = data.data() + static_cast<std::size_t>(i) * s;
  switch (s) {
    case 1: return p[0];
    case 2: return get16(p);
    default: return get32(p);
  }
}

void CImageFileDir::AddNewTag(const CTag& t) {
  if (CTag* old = pGetTagTyp(t.tag)) {
    *old = t;
    return;
  }
  tags.push_back(t);
}

void CImageFileDir::AddNewTagOfSameTyp(const CTag& t) { tags.push_back(t); }

const CTag* CImageFileDir::pGetTagTyp(uint16_t tag) const {
  for (const auto& t : tags)
    if (t.tag == tag) return &t;
  return nullptr;
}
CTag* CImageFileDir::pGetTagTyp(uint16_t tag) {
  for (auto& t : tags)
    if (t.tag == tag) return &t;
  return nullptr;
}

// ---------------------------------------------------------------- header

CImageFileDir* CTiffHeader::pGetThisIFD(short ifd) {
  return ifd >= 0 && ifd < CountIFD() ? &dirs[static_cast<std::size_t>(ifd)] : nullptr;
}
const CImageFileDir* CTiffHeader::pGetThisIFD(short ifd) const {
  return ifd >= 0 && ifd < CountIFD() ? &dirs[static_cast<std::size_t>(ifd)] : nullptr;
}

unsigned long CTiffHeader::AddNewTag(short ifd, uint16_t tag, uint16_t type, uint32_t value) {
  CImageFileDir* d = pGetThisIFD(ifd);
  if (!d) return fail(ulMemory, "IFD");
  std::vector<uint8_t> bytes;
  if (type == TIFF::Short)
    put16(bytes, static_cast<uint16_t>(value));
  else if (type == TIFF::Byte)
    bytes.push_back(static_cast<uint8_t>(value));
  else
    put32(bytes, value);
  d->AddNewTag(makeTag(tag, type, 1, std::move(bytes)));
  return 0;
}

unsigned long CTiffHeader::AddNewTag(short ifd, uint16_t tag, const uint16_t* shorts, uint32_t count) {
  CImageFileDir* d = pGetThisIFD(ifd);
  if (!d) return fail(ulMemory, "IFD");
  std::vector<uint8_t> bytes;
  for (uint32_t i = 0; i < count; ++i) put16(bytes, shorts[i]);
  d->AddNewTag(makeTag(tag, TIFF::Short, count, std::move(bytes)));
  return 0;
}

unsigned long CTiffHeader::AddNewTag(short ifd, uint16_t tag, const char* text) {
  CImageFileDir* d = pGetThisIFD(ifd);
  if (!d) return fail(ulMemory, "IFD");
  const std::string s = text ? text : "";
  // The text without its terminator, as these files have it.
  d->AddNewTag(makeTag(tag, TIFF::Ascii, static_cast<uint32_t>(s.size()), std::vector<uint8_t>(s.begin(), s.end())));
  return 0;
}

unsigned long CTiffHeader::AddNewTag(short ifd, uint16_t tag, uint32_t numerator, uint32_t denominator) {
  CImageFileDir* d = pGetThisIFD(ifd);
  if (!d) return fail(ulMemory, "IFD");
  std::vector<uint8_t> bytes;
  put32(bytes, numerator);
  put32(bytes, denominator);
  d->AddNewTag(makeTag(tag, TIFF::Rational, 1, std::move(bytes)));
  return 0;
}

unsigned long CTiffHeader::Read(int fd, uint64_t size) {
  uint8_t h[8];
  if (size < 8 || !readAt(fd, 0, h, 8)) return fail(ulStreamRead, "header");
  byteOrder = get16(h);
  version = get16(h + 2);
  firstIFD = get32(h + 4);
  dirs.clear();
  std::set<uint32_t> seen;
  for (uint32_t at = firstIFD; at != 0;) {
    if (!seen.insert(at).second) return fail(ulStreamRead, "IFD loop");
    uint8_t n2[2];
    if (static_cast<uint64_t>(at) + 2 > size || !readAt(fd, at, n2, 2)) return fail(ulStreamRead, "IFD");
    const uint16_t n = get16(n2);
    if (static_cast<uint64_t>(at) + 2 + 12ull * n + 4 > size) return fail(ulStreamRead, "IFD entries");
    std::vector<uint8_t> raw(12u * n + 4);
    if (!readAt(fd, at + 2ull, raw.data(), raw.size())) return fail(ulStreamRead, "IFD entries");
    CImageFileDir d;
    d.position = static_cast<long>(at);
    for (uint16_t i = 0; i < n; ++i) {
      const uint8_t* e = raw.data() + 12u * i;
      CTag t;
      t.position = static_cast<long>(at + 2u + 12u * i);
      t.tag = get16(e);
      t.type = get16(e + 2);
      t.count = get32(e + 4);
      t.value = get32(e + 8);
      const uint64_t bytes = t.uByteSize();
      if (bytes <= 4) {
        t.data.assign(e + 8, e + 8 + bytes);
      } else {
        if (bytes > size || static_cast<uint64_t>(t.value) + bytes > size) return fail(ulStreamRead, "tag data");
        t.data.resize(static_cast<std::size_t>(bytes));
        if (!readAt(fd, t.value, t.data.data(), t.data.size())) return fail(ulStreamRead, "tag data");
      }
      d.tags.push_back(std::move(t));
    }
    d.next = get32(raw.data() + 12u * n);
    at = d.next;
    dirs.push_back(std::move(d));
    if (dirs.size() > 4096) return fail(ulStreamRead, "IFD count");
  }
  return 0;
}

unsigned long CTiffHeader::Write(std::vector<uint8_t>& out) {
  const std::size_t base = out.size();
  put16(out, byteOrder);
  put16(out, version);
  put32(out, 0);
  std::size_t patchNext = base + 4;
  for (auto& d : dirs) {
    for (auto& t : d.tags)
      if (t.data.size() > 4) {
        t.value = static_cast<uint32_t>(out.size());
        out.insert(out.end(), t.data.begin(), t.data.end());
      }
    d.position = static_cast<long>(out.size());
    set32(out, patchNext, static_cast<uint32_t>(d.position));
    if (&d == &dirs.front()) firstIFD = static_cast<uint32_t>(d.position);
    put16(out, static_cast<uint16_t>(d.tags.size()));
    for (auto& t : d.tags) {
      t.position = static_cast<long>(out.size());
      put16(out, t.tag);
      put16(out, t.type);
      put32(out, t.count);
      put32(out, t.value);
    }
    patchNext = out.size();
    put32(out, 0);
  }
  return 0;
}

// ---------------------------------------------------------------- writer

CWTiff::~CWTiff() {
  if (out) out->file.abort();
}

unsigned long CWTiff::OpenFile(const char* name, TIFF::OPENMODE mode) {
  struct stat st{};
  if (!name || (mode == TIFF::Create && ::stat(name, &st) == 0)) return fail(ulOpenWrite, name);
  out = std::make_unique<TOut>();
  if (!out->file.open(name)) {
    out.reset();
    return fail(ulOpenWrite, name);
  }
  head.Clear();
  buffer.clear();
  return 0;
}

unsigned long CWTiff::FillHeader() {
  if (head.CountIFD() != 0) return 0;
  head.AddNewIFD();
  unsigned long r = SetNewSubfileTyp(1, 0, 0, 0, 0);
  if (!r) r = SetSoftware("Kelvarix Tiff", 0);
  if (!r) r = SetDateTime(0);
  if (!r) r = SetStripOffsets(0, 0);
  if (!r) r = setVersion(0);
  return r;
}

unsigned long CWTiff::SetNewSubfileTyp(short full, short reduced, short page, short mask, short ifd) {
  const uint32_t v = full ? 0u : static_cast<uint32_t>((reduced ? 1 : 0) | (page ? 2 : 0) | (mask ? 4 : 0));
  return head.AddNewTag(ifd, TIFF::NewSubfileTyp, TIFF::Long, v);
}

unsigned long CWTiff::SetDateTime(short ifd) {
  char text[20] = {};
  const std::time_t now = std::time(nullptr);
  std::tm t{};
  ::localtime_r(&now, &t);
  std::strftime(text, sizeof text, "%Y/%m/%d %H:%m:%S", &t);
  return head.AddNewTag(ifd, TIFF::DateTime, text);
}

unsigned long CWTiff::setVersion(short ifd) {
  // The build date of the library, as "Apr 20 2026".
  return head.AddNewTag(ifd, TIFF::Version, __DATE__);
}

unsigned long CWTiff::SetBitsPerSample(short a, short b, short c, short ifd) {
  const uint16_t v[3] = {static_cast<uint16_t>(a), static_cast<uint16_t>(b), static_cast<uint16_t>(c)};
  return head.AddNewTag(ifd, TIFF::BitsPerSample, v, 3);
}

unsigned long CWTiff::SetColorMapTag(short ifd) {
  std::vector<uint16_t> map(0x300);
  for (int i = 0; i < 256; ++i) map[static_cast<std::size_t>(i)] = map[256u + i] = map[512u + i] = static_cast<uint16_t>(i * 257);
  return head.AddNewTag(ifd, TIFF::ColorMap, map.data(), 0x300);
}

unsigned long CWTiff::Write() {
  if (!out) return fail(ulStreamWrite);
  return head.Write(buffer);
}

unsigned long CWTiff::SetPictureBegin(short ifd) {
  CImageFileDir* d = head.pGetThisIFD(ifd);
  CTag* strip = d ? d->pGetTagTyp(TIFF::StripOffsets) : nullptr;
  if (!out || !strip) return fail(ulStreamWrite, "StripOffsets");
  const uint64_t begin = out->flushed + buffer.size();
  strip->value = static_cast<uint32_t>(begin);
  const uint64_t entry = static_cast<uint64_t>(strip->position) + 8;
  if (entry < out->flushed) return fail(ulStreamWrite, "StripOffsets flushed");
  set32(buffer, static_cast<std::size_t>(entry - out->flushed), strip->value);
  return 0;
}

unsigned long CWTiff::SetColorMapBegin(short ifd) {
  const CImageFileDir* d = head.pGetThisIFD(ifd);
  return d && d->pGetTagTyp(TIFF::ColorMap) ? 0 : fail(ulMissingTagBase + 0x18);
}

unsigned long CWTiff::_flush() {
  if (!out) return fail(ulStreamWrite);
  if (!buffer.empty() && !out->file.write(buffer.data(), buffer.size())) return fail(ulStreamWrite, out->file.error().c_str());
  out->flushed += buffer.size();
  buffer.clear();
  return 0;
}

unsigned long CWTiff::WriteBytes(const unsigned char* bytes, int count) {
  if (!out) return fail(ulStreamWrite);
  buffer.insert(buffer.end(), bytes, bytes + count);
  return buffer.size() >= (std::size_t{4} << 20) ? _flush() : 0;
}

unsigned long CWTiff::CloseFile() {
  if (!out) return 0;
  unsigned long r = _flush();
  if (!r && !out->file.commit()) r = fail(ulStreamWrite, out->file.error().c_str());
  out.reset();
  return r;
}

unsigned long CWGTiff::FillHeader(long lines, long columns, long firstLine, long firstColumn) {
  unsigned long r = CWTiff::FillHeader();
  if (!r) r = SetSamplesPerPixel(1, 0);
  if (!r) r = SetBitsPerSample(8, 0);
  if (!r) r = SetCompression(1, 0);
  if (!r) r = SetPhotometricInterpretation(1, 0);
  if (!r) r = SetXResolution(1, 1, 0);
  if (!r) r = SetYResolution(1, 1, 0);
  if (!r) r = SetResolutionUnit(1, 0);
  if (!r) r = SetLines(lines, 0);
  if (!r) r = SetColumns(columns, 0);
  if (!r) r = SetFirstLine(firstLine, 0);
  if (!r) r = SetFirstColumn(firstColumn, 0);
  if (!r) r = SetRowsPerStrip(lines, 0);
  return r;
}

// ---------------------------------------------------------------- reader

CRTiff::~CRTiff() { CloseFile(); }

unsigned long CRTiff::OpenFile(const char* name) {
  CloseFile();
  fd_ = ::open(name ? name : "", O_RDONLY | O_CLOEXEC);
  if (fd_ < 0) return fail(ulOpenRead, name);
  struct stat st{};
  if (::fstat(fd_, &st) != 0) return fail(ulStreamRead, name);
  size_ = static_cast<uint64_t>(st.st_size);
  pos_ = 0;
  return head.Read(fd_, size_);
}

unsigned long CRTiff::CloseFile() {
  if (fd_ >= 0) ::close(fd_);
  fd_ = -1;
  return 0;
}

const CTag* CRTiff::GetTagTyp(uint16_t tag, short ifd) const {
  const CImageFileDir* d = head.pGetThisIFD(ifd);
  return d ? d->pGetTagTyp(tag) : nullptr;
}

namespace {
template <class V>
unsigned long value(const CTag* t, V& v, unsigned long missing) {
  if (!t || t->count == 0) return fail(missing);
  v = static_cast<V>(t->uGetValue(0));
  return 0;
}
}  // namespace

unsigned long CRTiff::GetLines(long& v, short ifd) const { return value(GetTagTyp(TIFF::ImageLength, ifd), v, ulMissingTagBase + 0x0e); }
unsigned long CRTiff::GetColumns(long& v, short ifd) const { return value(GetTagTyp(TIFF::ImageWidth, ifd), v, ulMissingTagBase + 0x0f); }
unsigned long CRTiff::GetFirstLine(long& v, short ifd) const {
  const CTag* t = GetTagTyp(TIFF::FirstLine, ifd);
  v = t ? static_cast<int32_t>(t->uGetValue(0)) : 0;
  return 0;
}
unsigned long CRTiff::GetFirstColumn(long& v, short ifd) const {
  const CTag* t = GetTagTyp(TIFF::FirstColumn, ifd);
  v = t ? static_cast<int32_t>(t->uGetValue(0)) : 0;
  return 0;
}
unsigned long CRTiff::GetSamplesPerPixel(short& v, short ifd) const { return value(GetTagTyp(TIFF::SamplesPerPixel, ifd), v, ulMissingTagBase + 0x10); }
unsigned long CRTiff::GetBitsPerSample(short& v, short ifd) const { return value(GetTagTyp(TIFF::BitsPerSample, ifd), v, ulMissingTagBase + 0x11); }
unsigned long CRTiff::Get3BitsPerSample(short v[3], short ifd) const {
  const CTag* t = GetTagTyp(TIFF::BitsPerSample, ifd);
  if (!t || t->count == 0) return fail(ulMissingTagBase + 0x11);
  for (uint32_t i = 0; i < 3; ++i) v[i] = static_cast<short>(t->uGetValue(i < t->count ? i : 0));
  return 0;
}
unsigned long CRTiff::GetCompression(short& v, short ifd) const {
  const CTag* t = GetTagTyp(TIFF::Compression, ifd);
  v = t ? static_cast<short>(t->uGetValue(0)) : 1;
  return 0;
}
unsigned long CRTiff::GetRowsPerStrip(long& v, short ifd) const {
  const CTag* t = GetTagTyp(TIFF::RowsPerStrip, ifd);
  if (t) {
    v = static_cast<long>(t->uGetValue(0));
    return 0;
  }
  return GetLines(v, ifd);
}
unsigned long CRTiff::GetPhotometric(short& v, short ifd) const { return value(GetTagTyp(TIFF::PhotometricInterpretation, ifd), v, ulMissingTagBase + 0x14); }
unsigned long CRTiff::GetPlanarConfiguration(short& v, short ifd) const {
  const CTag* t = GetTagTyp(TIFF::PlanarConfiguration, ifd);
  v = t ? static_cast<short>(t->uGetValue(0)) : 1;
  return 0;
}
unsigned long CRTiff::GetShortTag(uint16_t tag, short& v, short ifd) const { return value(GetTagTyp(tag, ifd), v, ulMissingTagBase + 0x19); }

long CRTiff::lGetCountStrips(short ifd) const {
  const CTag* t = GetTagTyp(TIFF::StripOffsets, ifd);
  return t ? static_cast<long>(t->count) : 0;
}
long CRTiff::lIsOneStrip(short ifd) const { return lGetCountStrips(ifd) == 1 ? 1 : 0; }

unsigned long CRTiff::lGetStripBegin(long strip, long& v, short ifd) {
  const CTag* t = GetTagTyp(TIFF::StripOffsets, ifd);
  if (!t || strip < 0 || static_cast<uint32_t>(strip) >= t->count) return fail(ulMissingTagBase + 0x16);
  v = static_cast<long>(t->uGetValue(static_cast<uint32_t>(strip)));
  pos_ = static_cast<uint64_t>(v);
  return 0;
}

unsigned long CRTiff::GetPictureBegin(long& v, short ifd) { return lGetStripBegin(0, v, ifd); }

long CRTiff::lGetStripCountLines(long strip, short ifd) const {
  long lines = 0, rows = 0;
  GetLines(lines, ifd);
  if (lIsOneStrip(ifd)) return lines;
  GetRowsPerStrip(rows, ifd);
  if (rows <= 0) return 0;
  const long before = strip * rows;
  return std::max(0L, std::min(rows, lines - before));
}

unsigned long CRTiff::GetColorMapBegin(long& v, short ifd) {
  const CTag* t = GetTagTyp(TIFF::ColorMap, ifd);
  if (!t) return fail(ulMissingTagBase + 0x18);
  if (t->count != 0x300) return fail(ulColorMapCount);
  v = static_cast<long>(t->value);
  pos_ = t->value;
  return 0;
}

unsigned long CRTiff::ReadBytes(unsigned char* to, long count) {
  if (fd_ < 0 || count < 0 || pos_ + static_cast<uint64_t>(count) > size_ || !readAt(fd_, pos_, to, static_cast<std::size_t>(count)))
    return fail(ulStreamRead, "pixels");
  pos_ += static_cast<uint64_t>(count);
  return 0;
}
