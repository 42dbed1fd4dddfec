// The system's TIFF dialect: uncompressed TIFF version 42 in Intel byte
// order with private tags for first line and column, value names and the
// coordinate system. A small tag container (CTag, CImageFileDir,
// CTiffHeader), a writer (CWTiff, CWGTiff) and a reader (CRTiff), written
// without any TIFF library.
//
// As written: header, then the out-of-line tag values, then the directory
// (entries in the order they were added, not sorted), then the pixels of one
// strip whose StripOffsets is patched in afterwards.
//
// Every operation answers 0 or an error code (also set with the last-error
// facility); nothing in this layer throws. The reader checks every offset and
// count against the size of the file: a broken file gives a code, never a
// read past its end.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/AtomicFile.h"

namespace TIFF {
enum TAGTYP : uint16_t {
  NewSubfileTyp = 0xFE, SubFileTyp = 0xFF, ImageWidth = 0x100, ImageLength = 0x101, BitsPerSample = 0x102,
  Compression = 0x103, PhotometricInterpretation = 0x106, Tresholding = 0x107, CellWidth = 0x108,
  CellLength = 0x109, FillOrderTag = 0x10A, DocumentName = 0x10D, ImageDescription = 0x10E, ScannerMake = 0x10F,
  ScannerModel = 0x110, StripOffsets = 0x111, Orientation = 0x112, SamplesPerPixel = 0x115, RowsPerStrip = 0x116,
  StripByteCounts = 0x117, MinSampleValue = 0x118, MaxSampleValue = 0x119, XResolution = 0x11A,
  YResolution = 0x11B, PlanarConfiguration = 0x11C, PageName = 0x11D, XPosition = 0x11E, YPosition = 0x11F,
  FreeOffsets = 0x120, FreeByteCounts = 0x121, GrayResponseUnit = 0x122, GrayResponseCurve = 0x123,
  Group3Options = 0x124, Group4Options = 0x125, ResolutionUnit = 0x128, PageNumber = 0x129,
  ColorResponseUnit = 0x12C, ColorResponseCurves = 0x12D, Software = 0x131, DateTime = 0x132, Artist = 0x13B,
  HostComputer = 0x13C, Predictor = 0x13D, WhitePoint = 0x13E, PrimaryCromaticities = 0x13F, ColorMap = 0x140,
  GreyNBytes = 0x1001, GreyNTyp = 0x1002, MacroPixSizeX = 0x1003, MacroPixSizeY = 0x1004, MacroPixArcX = 0x1005,
  MacroPixArcY = 0x1006, Lmin = 0x1007, Lmax = 0x1008, ExpandLines = 0x100A, ExpandColumns = 0x100B,
  GridLines = 0x100C, GridColumns = 0x100D, GridStepY = 0x100E, GridStepX = 0x100F, Datum = 0x1010,
  Uhrzeit = 0x1011, Firma = 0x1012, Kommentar = 0x1013, Kamera = 0x1014, Framegrabber = 0x1015, Leubild = 0x1016,
  Bearbeiter = 0x1017, Protokoll = 0x1018, TagCRectangle = 0x1019, CLeudichtData = 0x101A, FirstLine = 0x101B,
  FirstColumn = 0x101C, CPointList = 0x101D, CPointArray = 0x101E, CLeudichtDataContainer = 0x101F,
  ColorPalette = 0x1020, LogarithmicView = 0x1021, CalcMinMax = 0x1022, MinValue = 0x1023, MaxValue = 0x1024,
  ZoomFactor = 0x1025, ScrollerX = 0x1026, ScrollerY = 0x1027, IsoPalette = 0x1028, DataSizeLeft = 0x1029,
  DataSizeRight = 0x102A, DataSizeTop = 0x102B, DataSizeBottom = 0x102C, Version = 0x102D, Capture = 0x102E,
  ValueUnit = 0x102F, CoordinateSystem = 0x1030
};
enum TAGDATATYP : uint16_t { Byte = 1, Ascii = 2, Short = 3, Long = 4, Rational = 5 };
enum COMPRESSIONALGO : uint16_t {
  NoCompression = 1, ModifiedCCIT3 = 2, FaxGroup3 = 3, FaxGroup4 = 4, LZWCompression = 5,
  NoCompressionWordAlignment = 32771, PackBitCompression = 32773, UnknownCompression = 32767
};
enum PHOTOMETRIC : uint16_t { WhiteIsZero = 0, BlackIsZero = 1, RGBColor = 2, Palette = 3 };
enum PLANAR : uint16_t { PixelWhise = 1, PlaneWhise = 2 };
enum RESOLUTION : uint16_t { NoUnit = 1, Inch = 2, Centimeter = 3 };
enum OPENMODE { Create = 0, Overwrite = 1 };
union TAGDATA {
  uint32_t l;
  uint16_t s[2];
  uint8_t b[4];
};
// The name the analyser prints ("Unknown or no Tag !" for others).
const char* cpTagName(uint16_t tag);
// The name of a compression ("Fehlerhafte Angabe" outside the table).
const char* cpCompressionName(uint16_t value);
}  // namespace TIFF

namespace kxtiff {
// Codes of the container layer.
inline constexpr unsigned long ulOpenRead = 0xe321a025UL;
inline constexpr unsigned long ulStreamRead = 0xe331a026UL;
inline constexpr unsigned long ulOpenWrite = 0xe351a027UL;
inline constexpr unsigned long ulStreamWrite = 0xe361a028UL;
inline constexpr unsigned long ulMemory = 0xe761a00dUL;
inline constexpr unsigned long ulColorMapCount = 0xe701a018UL;
// A missing tag: 0xe781a0NN, NN by tag (see CRTiff).
inline constexpr unsigned long ulMissingTagBase = 0xe781a000UL;
}  // namespace kxtiff

class CTag {
 public:
  uint16_t tag = 0;
  uint16_t type = 0;
  uint32_t count = 0;
  uint32_t value = 0;          // the value itself when it fits into 4 bytes, else its file offset
  std::vector<uint8_t> data;   // the bytes of the value (inline ones too)
  long position = 0;           // file position of the directory entry
  // Bytes of the value: count * size of the type (0 for an unknown type).
  uint64_t uByteSize() const;
  // The i-th value as a number (Byte, Short, Long; Rational gives the
  // numerator); 0 when there is none.
  uint32_t uGetValue(uint32_t i = 0) const;
};

class CImageFileDir {
 public:
  long position = 0;
  uint32_t next = 0;
  std::vector<CTag> tags;
  // Replaces a tag of the same number, else appends.
  void AddNewTag(const CTag& t);
  void AddNewTagOfSameTyp(const CTag& t);
  const CTag* pGetTagTyp(uint16_t tag) const;
  CTag* pGetTagTyp(uint16_t tag);
  void ResizeTags(short n) { tags.resize(static_cast<std::size_t>(n < 0 ? 0 : n)); }
};

class CTiffHeader {
 public:
  uint16_t byteOrder = 18761;  // "II"
  uint16_t version = 42;
  uint32_t firstIFD = 0;
  std::vector<CImageFileDir> dirs;

  void Clear() { dirs.clear(), firstIFD = 0; }
  short CountIFD() const { return static_cast<short>(dirs.size()); }
  void AddNewIFD() { dirs.emplace_back(); }
  // The forms: a number, three Shorts, a text, a Rational.
  unsigned long AddNewTag(short ifd, uint16_t tag, uint16_t type, uint32_t value);
  unsigned long AddNewTag(short ifd, uint16_t tag, const uint16_t* shorts, uint32_t count);
  unsigned long AddNewTag(short ifd, uint16_t tag, const char* text);
  unsigned long AddNewTag(short ifd, uint16_t tag, uint32_t numerator, uint32_t denominator);
  CImageFileDir* pGetThisIFD(short ifd);
  const CImageFileDir* pGetThisIFD(short ifd) const;
  CImageFileDir* pGetIFD() { return dirs.empty() ? nullptr : &dirs[0]; }
  // Reads header and directory chain from a file of `size` bytes.
  unsigned long Read(int fd, uint64_t size);
  // Appends header, the out-of-line values and the directories to `out`;
  // notes the positions.
  unsigned long Write(std::vector<uint8_t>& out);
};

class CWTiff {
 public:
  CWTiff() = default;
  virtual ~CWTiff();
  unsigned long OpenFile(const char* name, TIFF::OPENMODE mode);
  // On an empty header: NewSubfileTyp, Software, DateTime, StripOffsets,
  // Version, in this order.
  unsigned long FillHeader();
  unsigned long Write();
  unsigned long CloseFile();
  unsigned long SetPictureBegin(short ifd);
  unsigned long SetColorMapBegin(short ifd);
  unsigned long WriteBytes(const unsigned char* bytes, int count);

  unsigned long SetLines(long v, short ifd) { return _short(TIFF::ImageLength, v, ifd); }
  unsigned long SetColumns(long v, short ifd) { return _short(TIFF::ImageWidth, v, ifd); }
  unsigned long SetFirstLine(long v, short ifd) { return head.AddNewTag(ifd, TIFF::FirstLine, TIFF::Long, static_cast<uint32_t>(v)); }
  unsigned long SetFirstColumn(long v, short ifd) { return head.AddNewTag(ifd, TIFF::FirstColumn, TIFF::Long, static_cast<uint32_t>(v)); }
  unsigned long SetStripOffsets(long v, short ifd) { return head.AddNewTag(ifd, TIFF::StripOffsets, TIFF::Long, static_cast<uint32_t>(v)); }
  unsigned long SetStripByteCounts(long v, short ifd) { return head.AddNewTag(ifd, TIFF::StripByteCounts, TIFF::Long, static_cast<uint32_t>(v)); }
  unsigned long SetRowsPerStrip(long v, short ifd) { return _short(TIFF::RowsPerStrip, v, ifd); }
  unsigned long SetSamplesPerPixel(short v, short ifd) { return _short(TIFF::SamplesPerPixel, v, ifd); }
  unsigned long SetBitsPerSample(short v, short ifd) { return _short(TIFF::BitsPerSample, v, ifd); }
  unsigned long SetBitsPerSample(short a, short b, short c, short ifd);
  unsigned long SetPhotometricInterpretation(short v, short ifd) { return _short(TIFF::PhotometricInterpretation, v, ifd); }
  unsigned long SetMinSampleValue(short v, short ifd) { return _short(TIFF::MinSampleValue, v, ifd); }
  unsigned long SetMaxSampleValue(short v, short ifd) { return _short(TIFF::MaxSampleValue, v, ifd); }
  unsigned long SetCompression(short v, short ifd) { return _short(TIFF::Compression, v, ifd); }
  unsigned long SetXResolution(long n, long d, short ifd) { return head.AddNewTag(ifd, TIFF::XResolution, static_cast<uint32_t>(n), static_cast<uint32_t>(d)); }
  unsigned long SetYResolution(long n, long d, short ifd) { return head.AddNewTag(ifd, TIFF::YResolution, static_cast<uint32_t>(n), static_cast<uint32_t>(d)); }
  unsigned long SetResolutionUnit(short v, short ifd) { return _short(TIFF::ResolutionUnit, v, ifd); }
  unsigned long SetPlanarConfiguration(short v, short ifd) { return _short(TIFF::PlanarConfiguration, v, ifd); }
  unsigned long SetDocumentName(const char* t, short ifd) { return head.AddNewTag(ifd, TIFF::DocumentName, t); }
  unsigned long SetImageDescription(const char* t, short ifd) { return head.AddNewTag(ifd, TIFF::ImageDescription, t); }
  unsigned long SetHostComputer(const char* t, short ifd) { return head.AddNewTag(ifd, TIFF::HostComputer, t); }
  unsigned long SetArtist(const char* t, short ifd) { return head.AddNewTag(ifd, TIFF::Artist, t); }
  unsigned long SetSoftware(const char* t, short ifd) { return head.AddNewTag(ifd, TIFF::Software, t); }
  // "%Y/%m/%d %H:%m:%S" of the local time: the month stands where the
  // minutes belong, as these files have always been written.
  unsigned long SetDateTime(short ifd);
  unsigned long setVersion(short ifd);
  unsigned long AddAsciiTag(uint16_t tag, const char* t, short ifd) { return head.AddNewTag(ifd, tag, t); }
  unsigned long AddShortTag(uint16_t tag, short v, short ifd) { return _short(static_cast<TIFF::TAGTYP>(tag), v, ifd); }
  unsigned long SetNewSubfileTyp(short full, short reduced, short page, short mask, short ifd);
  // The directories being written, for files with further directories and
  // tags of their own (old protocol files).
  CTiffHeader& rGetHeader() { return head; }
  unsigned long SetColorMapTag(short ifd);

 protected:
  unsigned long _short(TIFF::TAGTYP tag, long v, short ifd) {
    return head.AddNewTag(ifd, tag, TIFF::Short, static_cast<uint32_t>(v));
  }
  unsigned long _flush();

  CTiffHeader head;
  struct TOut {
    kx::platform::AtomicFile file;
    uint64_t flushed = 0;
  };
  std::unique_ptr<TOut> out;
  std::vector<uint8_t> buffer;
};

class CWGTiff : public CWTiff {
 public:
  // An 8-bit grey picture's tags.
  unsigned long FillHeader(long lines, long columns, long firstLine, long firstColumn);
  using CWTiff::FillHeader;
};

class CRTiff {
 public:
  CRTiff() = default;
  ~CRTiff();
  unsigned long OpenFile(const char* name);
  unsigned long CloseFile();
  short CountIFD() const { return head.CountIFD(); }
  unsigned long GetLines(long& v, short ifd) const;
  unsigned long GetColumns(long& v, short ifd) const;
  unsigned long GetFirstLine(long& v, short ifd) const;    // 0 without the tag
  unsigned long GetFirstColumn(long& v, short ifd) const;  // 0 without the tag
  unsigned long GetSamplesPerPixel(short& v, short ifd) const;
  unsigned long GetBitsPerSample(short& v, short ifd) const;
  unsigned long Get3BitsPerSample(short v[3], short ifd) const;
  unsigned long GetCompression(short& v, short ifd) const;  // 1 without the tag
  unsigned long GetRowsPerStrip(long& v, short ifd) const;  // the lines without the tag
  unsigned long GetPhotometric(short& v, short ifd) const;
  unsigned long GetPlanarConfiguration(short& v, short ifd) const;  // 1 without the tag
  unsigned long GetShortTag(uint16_t tag, short& v, short ifd) const;
  const CTag* GetTagTyp(uint16_t tag, short ifd) const;
  // The pixel start (the first strip); both position the stream.
  unsigned long GetPictureBegin(long& v, short ifd);
  long lIsOneStrip(short ifd) const;
  long lGetCountStrips(short ifd) const;
  unsigned long lGetStripBegin(long strip, long& v, short ifd);
  long lGetStripCountLines(long strip, short ifd) const;
  unsigned long GetColorMapBegin(long& v, short ifd);
  // From the stream position; fails at the end of the file.
  unsigned long ReadBytes(unsigned char* to, long count);
  uint64_t uGetFileSize() const { return size_; }
  const CImageFileDir* pGetIFD(short ifd) const { return head.pGetThisIFD(ifd); }

 private:
  CTiffHeader head;
  int fd_ = -1;
  uint64_t size_ = 0;
  uint64_t pos_ = 0;
};
