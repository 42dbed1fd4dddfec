// The files of the typed pictures: by extension TIFF, the closed formats of
// the utility library, or the raw and text forms of the template.
#include <cctype>
#include <cstring>
#include <string>
#include <vector>

#include "file98/KxPath.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "kxutils/ulImage.h"
#include "kxutils/ulImageFile.h"
#include "rastrix/CTiff.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TCoordinateSystem.h"
#include "rastrix/TFloatPicture.h"
#include "rastrix/TGreyPicture16.h"
#include "rastrix/TGreyPicture8.h"
#include "rastrix/TRGBFloatPicture.h"
#include "rastrix/TRGBPicture.h"

namespace Rastrix {

namespace {

std::string extensionOf(const char* name) {
  std::string drive, dir, stem, ext;
  kx::fnsplit(name ? name : "", drive, dir, stem, ext);
  for (auto& c : ext) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return ext;
}

// A non-zero code of the container becomes a trace and a throw here.
#define KX_TIFF(call)                                                             \
  do {                                                                            \
    if (const unsigned long kxCode = (call)) {                                    \
      TKxReportLastError(false);                                                  \
      KX_THROW(kxCode, "%s", #call);                                              \
    }                                                                             \
  } while (0)

enum class eKind { eGrey8, eGrey16, eFloat, eRGB };

template <class T>
void writeTiff(const TPlane<T>& p, const char* name, bool overwrite, eKind kind) {
  p.vProofWriteable(name, overwrite);
  CWTiff w;
  KX_TIFF(w.OpenFile(name, TIFF::Overwrite));
  KX_TIFF(w.FillHeader());
  const long lines = p.getLines(), columns = p.getColumns();
  const bool rgb = kind == eKind::eRGB;
  KX_TIFF(w.SetSamplesPerPixel(rgb ? 3 : 1, 0));
  if (rgb)
    KX_TIFF(w.SetBitsPerSample(8, 8, 8, 0));
  else
    KX_TIFF(w.SetBitsPerSample(kind == eKind::eGrey8 ? 8 : kind == eKind::eGrey16 ? 16 : 32, 0));
  if (rgb) KX_TIFF(w.SetPlanarConfiguration(1, 0));
  KX_TIFF(w.SetCompression(1, 0));
  KX_TIFF(w.SetPhotometricInterpretation(rgb ? 2 : 1, 0));
  const long res = kind == eKind::eGrey8 ? 1 : rgb ? 100 : 15;
  KX_TIFF(w.SetXResolution(res, 1, 0));
  KX_TIFF(w.SetYResolution(kind == eKind::eGrey8 ? 1 : rgb ? 100 : 10, 1, 0));
  KX_TIFF(w.SetResolutionUnit(kind == eKind::eGrey8 ? 1 : rgb ? 2 : 3, 0));
  KX_TIFF(w.SetLines(lines, 0));
  KX_TIFF(w.SetColumns(columns, 0));
  KX_TIFF(w.SetFirstLine(p.getFirstLine(), 0));
  KX_TIFF(w.SetFirstColumn(p.getFirstColumn(), 0));
  KX_TIFF(w.SetRowsPerStrip(lines, 0));
  if (rgb) KX_TIFF(w.SetStripByteCounts(lines * columns * 3, 0));
  if (kind == eKind::eGrey16 || kind == eKind::eFloat) {
    KX_TIFF(w.AddShortTag(TIFF::GreyNBytes, kind == eKind::eGrey16 ? 2 : 4, 0));
    KX_TIFF(w.AddShortTag(TIFF::GreyNTyp, kind == eKind::eGrey16 ? 0 : 1, 0));
  }
  if (kind == eKind::eFloat) {
    KX_TIFF(w.AddShortTag(TIFF::ExpandLines, static_cast<short>(lines), 0));
    KX_TIFF(w.AddShortTag(TIFF::ExpandColumns, static_cast<short>(columns), 0));
    KX_TIFF(w.AddShortTag(TIFF::GridLines, static_cast<short>(lines), 0));
    KX_TIFF(w.AddShortTag(TIFF::GridColumns, static_cast<short>(columns), 0));
    KX_TIFF(w.AddShortTag(TIFF::GridStepY, 1, 0));
    KX_TIFF(w.AddShortTag(TIFF::GridStepX, 1, 0));
  }
  char valueUnit[2048] = {};
  p.vFormatValueUnit(valueUnit);
  KX_TIFF(w.AddAsciiTag(TIFF::ValueUnit, valueUnit, 0));
  if (const TCoordinateSystem* ks = p.pGetCoordinateSystem(); ks && ks->eGetTypOfKS() != 0)
    KX_TIFF(w.AddAsciiTag(TIFF::CoordinateSystem, ks->sWrite2String().c_str(), 0));
  KX_TIFF(w.Write());
  KX_TIFF(w.SetPictureBegin(0));
  const int lineBytes = static_cast<int>(columns * static_cast<long>(sizeof(T)));
  for (int l = p.getFirstLine(); l < p.getFirstLine() + lines; ++l)
    KX_TIFF(w.WriteBytes(reinterpret_cast<const unsigned char*>(p[l] + p.getFirstColumn()), lineBytes));
  KX_TIFF(w.CloseFile());
  auto& self = const_cast<TPlane<T>&>(p);
  self.vSetLastFileName(name);
  self.vSetNotModified();
}

template <class T>
void readTiff(TPlane<T>& p, const char* name, bool alloc, eKind kind) {
  CRTiff r;
  KX_TIFF(r.OpenFile(name));
  long lines = 0, columns = 0, fl = 0, fc = 0, rows = 0;
  short samples = 0, bits = 0, compression = 0;
  const unsigned long checkCode = kind == eKind::eGrey8    ? 0xe3321046UL
                                  : kind == eKind::eGrey16 ? 0xe3321060UL
                                  : kind == eKind::eFloat  ? 0xe332105aUL
                                                           : 0xe752104fUL;
  auto need = [&](unsigned long code, const char* what) {
    if (code) {
      TKxReportLastError(false);
      KX_THROW(checkCode, "%s=0x%08lx", what, code);
    }
  };
  need(r.GetLines(lines, 0), "GetLines");
  need(r.GetColumns(columns, 0), "GetColumns");
  r.GetFirstLine(fl, 0);
  r.GetFirstColumn(fc, 0);
  r.GetCompression(compression, 0);
  r.GetRowsPerStrip(rows, 0);
  if (lines < 1 || columns < 1 || lines > 0x7fffffffL || columns > 0x7fffffffL)
    KX_THROW(checkCode, "Lines=%ld Columns=%ld", lines, columns);
  if (kind == eKind::eRGB) {
    short photometric = 0, planar = 1, b3[3] = {0, 0, 0};
    need(r.GetSamplesPerPixel(samples, 0), "GetSamplesPerPixel");
    r.GetPhotometric(photometric, 0);
    r.GetPlanarConfiguration(planar, 0);
    need(r.Get3BitsPerSample(b3, 0), "Get3BitsPerSample");
    if (compression != 1) KX_THROW(checkCode, "Compression!=TIFF::NoCompression");
    if (samples != 3) KX_THROW(checkCode, "SamplesPP!=3");
    if (photometric != 2) KX_THROW(checkCode, "PhotoMetric!=TIFF::RGBColor");
    if (planar != 1) KX_THROW(checkCode, "Planar!=TIFF::PixelWhise");
    for (int i = 0; i < 3; ++i)
      if (b3[i] != 8) KX_THROW(checkCode, "BitsPerSample[%d]!=8", i);
  } else {
    need(r.GetSamplesPerPixel(samples, 0), "GetSamplesPerPixel");
    need(r.GetBitsPerSample(bits, 0), "GetBitsPerSample");
    const short wantBits = kind == eKind::eGrey8 ? 8 : kind == eKind::eGrey16 ? 16 : 32;
    if (samples != 1 || bits != wantBits || compression != 1 || (kind != eKind::eGrey8 && rows != lines))
      KX_THROW(checkCode, "Samples=%d Bits=%d Compression=%d RowsPerStrip=%ld", samples, bits, compression, rows);
    if (kind == eKind::eFloat) {
      short v = 0;
      need(r.GetShortTag(TIFF::GreyNTyp, v, 0), "GetNDataTyp");
      need(r.GetShortTag(TIFF::GreyNBytes, v, 0), "GetNBytes");
    }
  }
  // The pixels must be in the file before anything is allocated.
  const uint64_t lineBytes = static_cast<uint64_t>(columns) * sizeof(T);
  if (static_cast<uint64_t>(lines) * lineBytes > r.uGetFileSize()) KX_THROW(0xe331a026UL, "%s: pixels", name);
  if (alloc) {
    if (!p.isValid() || p.getLines() != lines || p.getColumns() != columns || p.getFirstLine() != fl ||
        p.getFirstColumn() != fc)
      p.alloc(static_cast<int>(lines), static_cast<int>(columns), static_cast<int>(fl), static_cast<int>(fc),
              static_cast<int>(columns));
  } else {
    const bool eight = kind == eKind::eGrey8;
    const unsigned long base = eight ? 0xe7521047UL : 0xe752105bUL;
    if (p.getLines() != lines) KX_THROW(base, "Pic.Lines=%d != Lines=%ld", p.getLines(), lines);
    if (p.getColumns() != columns) KX_THROW(base + 1, "Pic.Columns=%d != Columns=%ld", p.getColumns(), columns);
    if (p.getFirstLine() != fl) KX_THROW(base + 2, "Pic.FirstLine=%d != FirstLine=%ld", p.getFirstLine(), fl);
    if (p.getFirstColumn() != fc) KX_THROW(base + 3, "Pic.FirstColumn=%d != FirstColumn=%ld", p.getFirstColumn(), fc);
  }
  const bool severalStrips = !r.lIsOneStrip(0) && (kind == eKind::eGrey8 || (kind == eKind::eRGB && rows != lines));
  if (!severalStrips) {
    long begin = 0;
    KX_TIFF(r.GetPictureBegin(begin, 0));
    for (int l = 0; l < lines; ++l)
      KX_TIFF(r.ReadBytes(reinterpret_cast<unsigned char*>(p[p.getFirstLine() + l] + p.getFirstColumn()),
                          static_cast<long>(lineBytes)));
  } else {
    // Strip by strip; the RGB line counter starts at 0 whatever the first
    // line is (kept as it is).
    long line = 0;
    for (long s = 0; s < r.lGetCountStrips(0) && line < lines; ++s) {
      long begin = 0;
      KX_TIFF(r.lGetStripBegin(s, begin, 0));
      const long n = r.lGetStripCountLines(s, 0);
      for (long k = 0; k < n && line < lines; ++k, ++line) {
        const int target = kind == eKind::eRGB ? static_cast<int>(line) : p.getFirstLine() + static_cast<int>(line);
        KX_TIFF(r.ReadBytes(reinterpret_cast<unsigned char*>(p[target] + p.getFirstColumn()),
                            static_cast<long>(lineBytes)));
      }
    }
  }
  if (const CTag* vu = r.GetTagTyp(TIFF::ValueUnit, 0)) {
    const std::string text(vu->data.begin(), vu->data.end());
    p.vReadValueUnit(text.c_str());
  }
  if (const CTag* ks = r.GetTagTyp(TIFF::CoordinateSystem, 0)) {
    const std::string text(ks->data.begin(), ks->data.end());
    TCoordinateSystemVector* v = pGetDefaultCoordinateSystemVector();
    const int index = v->iCreateFromString(text.c_str());
    p.SetCoordinateSystem(index < 0 ? pGetDefaultCoordinateSystem() : (*v)[index]);
  }
  r.CloseFile();
  p.vSetLastFileName(name);
  p.setTimeStamp();
  p.vSetNotModified();
  p.vSendCommonMessage(51, 0);
}

// The closed formats: geometry from the library, then the pixels.
template <class T>
void geometry(TPlane<T>& p, bool alloc, int lines, int columns) {
  if (p.getLines() == lines && p.getColumns() == columns) return;
  if (!alloc) KX_THROW0(0x12345678UL);
  p.alloc(lines, columns, 0, 0, columns);
}

}  // namespace

// ---------------------------------------------------------------- 8 bit

void TGreyPicture8::writeFile(const char* name, bool overwrite) const {
  KX_TRY {
    if (extensionOf(name) == ".tif")
      writeTiff(*this, name, overwrite, eKind::eGrey8);
    else
      TPlane<unsigned char>::writeFile(name, overwrite);
  }
  KX_CATCH
}

void TGreyPicture8::readFile(const char* name, bool alloc) {
  KX_TRY {
    const std::string ext = extensionOf(name);
    if (ext == ".tif" || ext == ".prt")
      readTiff(*this, name, alloc, eKind::eGrey8);
    else
      TPlane<unsigned char>::readFile(name, alloc);
  }
  KX_CATCH
}

const char* TGreyPicture8::getFileExtension() {
  static thread_local std::string s;
  s = std::string(TLanguage::TLanguageString("Tif-Dateien (*.tif)|*.tif|", "Tif files (*.tif)|*.tif|")()) +
      "Picture unsigned char (*.puc)|*.puc|Textformat images (*.txt)|*.txt";
  return s.c_str();
}

// ---------------------------------------------------------------- 16 bit

void TGreyPicture16::writeFile(const char* name, bool overwrite) const {
  KX_TRY {
    const std::string ext = extensionOf(name);
    if (ext == ".tif" || ext == ".tix") {
      writeTiff(*this, name, overwrite, eKind::eGrey16);
    } else if (ext == ".b16") {
      if (ulB16_WriteW(&(*this)[getFirstLine()][getFirstColumn()], getLines(), getColumns(), getColumns(), 0, name,
                       overwrite))
        KX_THROW(0xe3617000UL, "%s", name);
    } else {
      TPlane<unsigned short>::writeFile(name, overwrite);
    }
  }
  KX_CATCH
}

void TGreyPicture16::readFile(const char* name, bool alloc) {
  KX_TRY {
    const std::string ext = extensionOf(name);
    if (ext == ".tif" || ext == ".tix") {
      readTiff(*this, name, alloc, eKind::eGrey16);
      // The top bit is cleared on the way in (not on the way out).
      for (int l = getFirstLine(); l < getFirstLine() + getLines(); ++l)
        for (int c = getFirstColumn(); c < getFirstColumn() + getColumns(); ++c) (*this)[l][c] &= 0x7FFF;
    } else if (ext == ".b16" || ext == ".dng") {
      int lines = 0, columns = 0;
      if (ext == ".b16") {
        if (ulB16_InfoW(name, &lines, &columns, nullptr, nullptr)) KX_THROW(0xe3017000UL, "%s", name);
      } else {
        std::vector<unsigned char> record(0x550, 0);
        const int size = 0x550;
        std::memcpy(record.data(), &size, sizeof size);
        if (ulDNG_InfoW(name, record.data())) KX_THROW(0xe3017000UL, "%s", name);
        std::memcpy(&columns, record.data() + 0x314, 4);
        std::memcpy(&lines, record.data() + 0x318, 4);
      }
      geometry(*this, alloc, lines, columns);
      unsigned short* first = &(*this)[getFirstLine()][getFirstColumn()];
      const unsigned long r = ext == ".b16" ? ulB16_ReadW(name, first, lines, columns, getColumns())
                                            : ulDNG_ReadGrey16ImageW(name, first, lines, columns, getColumns());
      if (r) KX_THROW(0xe3317000UL, "%s", name);
      setTimeStamp();
    } else {
      TPlane<unsigned short>::readFile(name, alloc);
    }
  }
  KX_CATCH
}

const char* TGreyPicture16::getFileExtension() {
  static thread_local std::string s;
  s = std::string(TLanguage::TLanguageString(
          "Tix-Dateien (*.tix)|*.tix|Tiff-Dateien (*.tif)|*.tif|PCO-Bilder (*.b16)|*.b16|DNG-Bilder (*.dng)|*.dng|",
          "Tix files (*.tix)|*.tix|Tiff files (*.tif)|*.tif|PCO images (*.b16)|*.b16|DNG images (*.dng)|*.dng|")()) +
      TPlane<unsigned short>::getFileExtension();
  return s.c_str();
}

// ---------------------------------------------------------------- float

void TFloatPicture::writeFile(const char* name, bool overwrite) const {
  KX_TRY {
    const std::string ext = extensionOf(name);
    if (ext == ".tix" || ext == ".tif")
      writeTiff(*this, name, overwrite, eKind::eFloat);
    else
      TPlane<float>::writeFile(name, overwrite);
  }
  KX_CATCH
}

void TFloatPicture::readFile(const char* name, bool alloc) {
  KX_TRY {
    const std::string ext = extensionOf(name);
    if (ext == ".tix" || ext == ".prt" || ext == ".tif")
      readTiff(*this, name, alloc, eKind::eFloat);
    else
      TPlane<float>::readFile(name, alloc);
  }
  KX_CATCH
}

const char* TFloatPicture::getFileExtension() {
  static thread_local std::string s;
  s = std::string(TLanguage::TLanguageString("Tix-Dateien (*.tix)|*.tix|", "Tix files (*.tix)|*.tix|")()) +
      TLanguage::TLanguageString("Prt-Dateien (*.prt)|*.prt|", "Prt files (*.prt)|*.prt|")() +
      TPlane<float>::getFileExtension();
  return s.c_str();
}

// ---------------------------------------------------------------- RGB

void TRGBPicture::writeFile(const char* name, bool overwrite) const {
  KX_TRY {
    // The files hold red first: exchanged for the write, and back.
    _swapRB();
    try {
      if (extensionOf(name) == ".tif")
        writeTiff(*this, name, overwrite, eKind::eRGB);
      else
        TPlane<TRGBPixel>::writeFile(name, overwrite);
    } catch (...) {
      _swapRB();
      throw;
    }
    _swapRB();
  }
  KX_CATCH
}

void TRGBPicture::readFile(const char* name, bool alloc) {
  KX_TRY {
    const std::string ext = extensionOf(name);
    if (ext == ".tif") {
      readTiff(*this, name, alloc, eKind::eRGB);
      _swapRB();
    } else if (ext == ".dng") {
      std::vector<unsigned char> record(0x550, 0);
      const int size = 0x550;
      std::memcpy(record.data(), &size, sizeof size);
      if (ulDNG_InfoW(name, record.data())) KX_THROW(0xe3017000UL, "%s", name);
      int lines = 0, columns = 0;
      std::memcpy(&columns, record.data() + 0x30C, 4);
      std::memcpy(&lines, record.data() + 0x310, 4);
      geometry(*this, alloc, lines, columns);
      if (ulDNG_ReadRGBThumbnailImageW(name, &(*this)[getFirstLine()][getFirstColumn()], lines, columns, getColumns()))
        KX_THROW(0xe3317000UL, "%s", name);
    } else {
      vSetSendMessage(false);
      try {
        TPlane<TRGBPixel>::readFile(name, alloc);
      } catch (...) {
        vSetSendMessage(true);
        throw;
      }
      _swapRB();
      vSetSendMessage(true);
      if (alloc) vSendCommonMessage(50, 0);
    }
    setTimeStamp();
    vSendCommonMessage(51, 0);
  }
  KX_CATCH
}

const char* TRGBPicture::getFileExtension() {
  static thread_local std::string s;
  s = std::string(TLanguage::TLanguageString("Tif-Dateien (*.tif)|*.tif|DNG-Bilder (*.dng)|*.dng|",
                                             "Tif files (*.tif)|*.tif|DNG images (*.dng)|*.dng|")()) +
      TPlane<TRGBPixel>::getFileExtension();
  return s.c_str();
}

// ---------------------------------------------------------------- RGB float

void TRGBFloatPicture::writeFile(const char* name, bool overwrite) const {
  TPlane<TRGBFloatPixel>::writeFile(name, overwrite);
}

void TRGBFloatPicture::readFile(const char* name, bool alloc) {
  KX_TRY {
    if (extensionOf(name) == ".cos")
      vReadCosFile(name, alloc);
    else
      TPlane<TRGBFloatPixel>::readFile(name, alloc);
  }
  KX_CATCH
}

void TRGBFloatPicture::vReadCosFile(const char* name, bool alloc) {
  KX_TRY {
    int type = 0, lines = 0, columns = 0, fl = 0, fc = 0;
    if (ulImage_GetFileInfoW(name, &type, &lines, &columns, &fl, &fc)) KX_THROW(0x03317000UL, "%s", name);
    if (type != eRGBF) KX_THROW(0x00517000UL, "Wrong image type");
    if (getLines() != lines || getColumns() != columns || getFirstLine() != fl || getFirstColumn() != fc) {
      if (!alloc) KX_THROW(0x07517000UL, "Wrong image size");
      this->alloc(lines, columns, fl, fc, columns);
    }
    void* handle = vpCreateIMAGE_HANDLE();
    const unsigned long r = ulImage_ReadFile1W(handle, name, 0);
    ulImage_DeleteHandle(&handle);
    if (r) KX_THROW(0x03317000UL, "%s", name);
    setTimeStamp();
    vSendCommonMessage(50, 0);
    vSendCommonMessage(51, 0);
  }
  KX_CATCH
}

const char* TRGBFloatPicture::getFileExtension() {
  static thread_local std::string s;
  s = std::string(TPlane<TRGBFloatPixel>::getFileExtension()) +
      TLanguage::TLanguageString("|Farbraum-Text-Dateien *.cos|*.cos", "|Color space text files *.cos|*.cos")();
  return s.c_str();
}

}  // namespace Rastrix
