// Plane files: the raw format, the text format, the clipboard forms.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "kxexception/KxError.h"
#include "kxexception/TKxClipboard.h"
#include "kxexception/TLanguage.h"
#include "platform/AtomicFile.h"
#include "platform/CLocale.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TCoordinateSystem.h"
#include "rastrix/TPlane.h"

namespace Rastrix {

namespace {

constexpr std::size_t uHeaderRoom = 2048;

// The plane's rows as one block when they lie one behind the other.
template <class T>
const T* contiguous(const TPlane<T>& p) {
  const int first = p.getFirstLine(), lines = p.getLines(), columns = p.getColumns();
  const T* start = p[first] + p.getFirstColumn();
  for (int l = 1; l < lines; ++l)
    if (p[first + l] + p.getFirstColumn() != start + static_cast<std::ptrdiff_t>(l) * columns) return nullptr;
  return start;
}

bool fileExists(const char* name) {
  struct stat st{};
  return name && ::stat(name, &st) == 0;
}

std::string lower(const char* s) {
  std::string out = s ? s : "";
  for (auto& c : out) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return out;
}

// Appends to a header buffer of uHeaderRoom bytes.
void appendTo(char* out, const std::string& text) {
  const std::size_t used = std::strlen(out);
  if (used + 1 >= uHeaderRoom) return;
  std::snprintf(out + used, uHeaderRoom - used, "%s", text.c_str());
}

// The word behind a key up to the line end: empty when none.
std::string wordBehind(const char* at) {
  while (*at == ' ' || *at == '\t') ++at;
  const char* end = at;
  while (*end && !std::isspace(static_cast<unsigned char>(*end))) ++end;
  return std::string(at, end);
}

template <class T>
const char* textTypeWord() {
  using Tr = TPixelTraits<T>;
  switch (Tr::ePixelTyp) {
    case eUC: return "uchar";
    case eUS: return "ushort";
    case eF: return "float";
    case eI: return "int";
    case eRGB: return "rgb";
    default: return "rgbfloat";
  }
}

template <class T>
const char* fileFilter() {
  switch (TPixelTraits<T>::ePixelTyp) {
    case eUC: return "Textformat images (*.txt)|*.txt|Picture unsigned char (*.puc)|*.puc";
    case eUS: return "Textformat images (*.txt)|*.txt|Picture unsigned short (*.pus)|*.pus";
    case eF: return "Textformat images (*.txt)|*.txt|Picture float (*.pf)|*.pf";
    case eI: return "Textformat images (*.txt)|*.txt|Picture int (*.pi)|*.pi";
    case eRGB: return "Textformat images (*.txt)|*.txt|Picture Color (*.pco)|*.pco";
    default: return "Textformat images (*.txt)|*.txt|Picture Color Float (*.pcf)|*.pcf";
  }
}

// The reference of the colour-value export, by the destination flag.
void referenceOf(const TPixelColorSpace& cs, std::string& name, double v[3]) {
  const unsigned to = cs.uGetToFlag();
  const TRGBFloatPixel* p = nullptr;
  unsigned nameFlag = 0;
  if (to == 0x100 || to == 0x200) nameFlag = 0x80, p = &cs.rGetRefInLu_v_();
  if (to == 0x400 || to == 0x800) nameFlag = 0x10, p = &cs.rGetRefInXYZ();
  if (to == 0x4000 || to == 0x10000) nameFlag = 0x20, p = &cs.rGetRefInLxy();
  name = p ? TPixelColorSpace::cpGetColorSpaceName(nameFlag) : "None";
  v[0] = p ? p->r : 0.0;
  v[1] = p ? p->g : 0.0;
  v[2] = p ? p->b : 0.0;
}

}  // namespace

// ---------------------------------------------------------------- header

template <class T>
void TPlane<T>::vFormatHeader(char* out) const {
  char text[512];
  std::snprintf(text, sizeof text, "%s%s\r\n%s%d\r\n%s%d\r\n%s%d\r\n%s%d\r\n", "Typ=", TTraits::cpTypeName, "Lines=",
                getLines(), "Columns=", getColumns(), "FirstLine=", getFirstLine(), "FirstColumn=", getFirstColumn());
  appendTo(out, text);
  if constexpr (TTraits::bColor) {
    char cs[128];
    rGetPixelColorSpace().vWriteToString(cs);
    appendTo(out, std::string("ColorSpace=") + cs);
  }
}

template <class T>
void TPlane<T>::vFormatValueUnit(char* out) const {
  for (int i = 0; i < TTraits::iValuesPerPixel; ++i) {
    appendTo(out, "Value" + std::to_string(i) + "=" + rStrGetValuePic(i) + "\r\n");
    appendTo(out, "Unit" + std::to_string(i) + "=" + rStrGetUnitPic(i) + "\r\n");
  }
}

template <class T>
void TPlane<T>::vReadHeader(const char* header, const char* name, int& lines, int& columns, int& firstLine,
                            int& firstColumn) {
  KX_TRY {
    struct TKey {
      const char* key;
      unsigned long missing, unreadable;
      int* value;
    } keys[] = {{"Lines=", Err::ulFileNoLines, Err::ulFileLinesUnreadable, &lines},
                {"Columns=", Err::ulFileNoColumns, Err::ulFileColumnsUnreadable, &columns},
                {"FirstLine=", Err::ulFileNoFirstLine, Err::ulFileFirstLineUnreadable, &firstLine},
                {"FirstColumn=", Err::ulFileNoFirstColumn, Err::ulFileFirstColumnUnreadable, &firstColumn}};
    for (const auto& k : keys) {
      const char* at = std::strstr(header, k.key);
      if (!at) KX_THROW(k.missing, "%s", name);
      if (std::sscanf(at + std::strlen(k.key), "%d", k.value) != 1) KX_THROW(k.unreadable, "%s", name);
    }
    if (const char* cs = std::strstr(header, "ColorSpace=")) rGetPixelColorSpace().vReadFromString(cs + 11);
  }
  KX_CATCH
}

template <class T>
void TPlane<T>::vReadValueUnit(const char* header) {
  KX_TRY {
    for (int i = 0; i < TTraits::iValuesPerPixel; ++i) {
      const std::string valueKey = "Value" + std::to_string(i) + "=", unitKey = "Unit" + std::to_string(i) + "=";
      std::string value, unit;
      if (const char* at = std::strstr(header, valueKey.c_str()))
        value = wordBehind(at + valueKey.size());
      else if (const char* old = std::strstr(header, "Quantity="))
        value = wordBehind(old + 9);
      if (const char* at = std::strstr(header, unitKey.c_str()))
        unit = wordBehind(at + unitKey.size());
      else if (const char* old = std::strstr(header, "Unit="))
        unit = wordBehind(old + 5);
      setValueUnitPic(i, value, unit);
    }
  }
  KX_CATCH
}

// ---------------------------------------------------------------- raw files

template <class T>
void TPlane<T>::vProofWriteable(const char* name, bool overwrite) const {
  KX_TRY {
    if (!isValid()) KX_THROW0(Err::ulPlaneNotValid);
    if (!fileExists(name)) return;
    if (!overwrite) KX_THROW(Err::ulFileExists, "%s", name);
    if (::unlink(name) != 0) KX_THROW(Err::ulFileDeleteFailed, "%s", name);
  }
  KX_CATCH
}

template <class T>
void TPlane<T>::writeFile(const char* name, bool overwrite) const {
  KX_TRY {
    vProofWriteable(name, overwrite);
    char header[uHeaderRoom] = {};
    vFormatHeader(header);
    vFormatValueUnit(header);
    std::string text = header;
    if (const TCoordinateSystem* ks = pGetCoordinateSystem(); ks && ks->eGetTypOfKS() != 0) text += ks->sWrite2String();
    kx::platform::AtomicFile out;
    if (!out.open(name)) KX_THROW(Err::ulFileOpenWrite, "%s", name);
    bool ok = out.write(text.c_str(), text.size() + 1);
    const std::size_t lineBytes = static_cast<std::size_t>(getColumns()) * sizeof(T);
    if (const T* block = contiguous(*this)) {
      ok = ok && out.write(block, lineBytes * static_cast<std::size_t>(getLines()));
    } else {
      // Rows gathered into blocks of about 4 MB: no system call per line.
      const std::size_t perBlock = std::max<std::size_t>(1, (std::size_t{4} << 20) / std::max<std::size_t>(1, lineBytes));
      std::vector<char> buffer(perBlock * lineBytes);
      for (int l = 0; ok && l < getLines();) {
        std::size_t n = 0;
        for (; n < perBlock && l < getLines(); ++n, ++l)
          std::memcpy(buffer.data() + n * lineBytes, (*this)[getFirstLine() + l] + getFirstColumn(), lineBytes);
        ok = out.write(buffer.data(), n * lineBytes);
      }
    }
    if (!ok || !out.commit()) KX_THROW(Err::ulFileWriteFailed, "%s: %s", name, out.error().c_str());
    auto* self = const_cast<TPlane<T>*>(this);
    self->vSetLastFileName(name);
    self->vSetNotModified();
  }
  KX_CATCH
}

template <class T>
void TPlane<T>::readFileBinaer(const char* name, bool alloc) {
  KX_TRY {
    const int fd = ::open(name ? name : "", O_RDONLY | O_CLOEXEC);
    if (fd < 0) KX_THROW(Err::ulFileOpenRead, "%s", name ? name : "");
    const std::unique_ptr<int, void (*)(int*)> closer(new int(fd), [](int* f) {
      ::close(*f);
      delete f;
    });
    // The header: up to the null byte, at most 2047 bytes; a longer header is
    // not noticed, and the pixels then begin at byte 2047.
    char header[uHeaderRoom] = {};
    std::size_t got = 0;
    while (got < uHeaderRoom - 1) {
      const ssize_t n = ::pread(fd, header + got, uHeaderRoom - 1 - got, static_cast<off_t>(got));
      if (n < 0 && errno == EINTR) continue;
      if (n <= 0) break;
      got += static_cast<std::size_t>(n);
    }
    const char* nul = static_cast<const char*>(std::memchr(header, '\0', got));
    const std::size_t pixelsAt = nul ? static_cast<std::size_t>(nul - header) + 1 : got;
    const char* typ = std::strstr(header, "Typ=");
    if (!typ) KX_THROW(Err::ulFileNoTyp, "%s", name);
    const char* cr = std::strchr(typ, '\r');
    if (!cr) KX_THROW(Err::ulFileTypValue, "%s", name);
    // The type of the file is read but, as it always was, not compared in
    // earnest: a type of the same size reads in.
    const std::string fileType(typ + 4, std::min<std::size_t>(128, static_cast<std::size_t>(cr - typ - 4)));
    (void)fileType;
    int lines = 0, columns = 0, firstLine = 0, firstColumn = 0;
    vReadHeader(header, name, lines, columns, firstLine, firstColumn);
    if (lines < 1) KX_THROW(Err::ulFileLinesUnreadable, "%s: Lines=%d", name, lines);
    if (columns < 1) KX_THROW(Err::ulFileColumnsUnreadable, "%s: Columns=%d", name, columns);
    struct stat st{};
    const unsigned long long need =
        pixelsAt + static_cast<unsigned long long>(lines) * static_cast<unsigned long long>(columns) * sizeof(T);
    if (::fstat(fd, &st) != 0 || static_cast<unsigned long long>(st.st_size) < need)
      KX_THROW(Err::ulFileReadFailed, "%s", name);
    if (!alloc) {
      if (!isValid()) KX_THROW0(Err::ulPlaneNotValid);
      if (getLines() != lines) KX_THROW(Err::ulFileLinesDiffer, "Lines=%d != _Lines=%d", getLines(), lines);
      if (getColumns() != columns) KX_THROW(Err::ulFileColumnsDiffer, "Columns=%d != _Columns=%d", getColumns(), columns);
      if (getFirstLine() != firstLine)
        KX_THROW(Err::ulFileFirstLineDiffers, "FirstLine=%d != _FirstLine=%d", getFirstLine(), firstLine);
      if (getFirstColumn() != firstColumn)
        KX_THROW(Err::ulFileFirstColumnDiffers, "FirstColumn=%d != _FirstColumn=%d", getFirstColumn(), firstColumn);
    } else if (!isValid() || getLines() != lines || getColumns() != columns) {
      this->alloc(lines, columns);
      moveTo(firstLine, firstColumn);
    }
    auto readAt = [&](void* to, std::size_t size, std::size_t at) {
      std::size_t done = 0;
      while (done < size) {
        const ssize_t n = ::pread(fd, static_cast<char*>(to) + done, size - done, static_cast<off_t>(at + done));
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) KX_THROW(Err::ulFileReadFailed, "%s", name);
        done += static_cast<std::size_t>(n);
      }
    };
    const std::size_t lineBytes = static_cast<std::size_t>(columns) * sizeof(T);
    if (const T* block = contiguous(*this)) {
      readAt(const_cast<T*>(block), lineBytes * static_cast<std::size_t>(lines), pixelsAt);
    } else {
      for (int l = 0; l < lines; ++l)
        readAt((*this)[getFirstLine() + l] + getFirstColumn(), lineBytes, pixelsAt + static_cast<std::size_t>(l) * lineBytes);
    }
    vReadValueUnit(header);
    TCoordinateSystemVector* v = pGetDefaultCoordinateSystemVector();
    const int index = v->iCreateFromString(header);
    SetCoordinateSystem(index < 0 ? pGetDefaultCoordinateSystem() : (*v)[index]);
  }
  KX_CATCH
}

template <class T>
void TPlane<T>::readFile(const char* name, bool alloc) {
  KX_TRY {
    if (lower(name).find(".txt") != std::string::npos)
      readFileAscii(name, alloc);
    else
      readFileBinaer(name, alloc);
    vSetLastFileName(name);
    setTimeStamp();
    vSetNotModified();
    vSendCommonMessage(51, 0);
  }
  KX_CATCH
}

template <class T>
void TPlane<T>::insertFile(const char* name) {
  KX_TRY {
    TPlane<T> file;
    file.readFile(name, true);
    insert(file);
  }
  KX_CATCH
}

template <class T>
void TPlane<T>::writeSubFile(const char* name, const CRectangle& r, bool overwrite) const {
  KX_TRY {
    const int l1 = std::max(r.iFirstLine, getFirstLine()), l2 = std::min(r.iLastLine, getFirstLine() + getLines() - 1);
    const int c1 = std::max(r.iFirstColumn, getFirstColumn()),
              c2 = std::min(r.iLastColumn, getFirstColumn() + getColumns() - 1);
    if (l1 == getFirstLine() && l2 == getFirstLine() + getLines() - 1 && c1 == getFirstColumn() &&
        c2 == getFirstColumn() + getColumns() - 1) {
      writeFile(name, overwrite);
      return;
    }
    TPlane<T> view;
    CRectangle cut(r);
    cut.iFirstLine = l1;
    cut.iLastLine = l2;
    cut.iFirstColumn = c1;
    cut.iLastColumn = c2;
    view.beSubPicture(*this, cut);
    view.TPlane<T>::writeFile(name, overwrite);
  }
  KX_CATCH
}

// ---------------------------------------------------------------- text files

template <class T>
void TPlane<T>::vReadHeader2(std::FILE* f, int* firstColumn, int* lastColumn, int* firstLine, int* lastLine,
                             bool* colour) {
  KX_TRY {
    char word[128] = {};
    if (std::fscanf(f, "%127s", word) != 1) KX_THROW0(Err::ulPixelTokenUnreadable);
    const std::string w = lower(word);
    const struct {
      const char* word;
      std::size_t size;
      bool colour;
    } types[] = {{"uchar", 1, false}, {"ushort", 2, false}, {"rgb", 3, true},
                 {"rgbfloat", 12, true}, {"float", 4, false}, {"int", 4, false}};
    for (const auto& t : types)
      if (w == t.word) {
        if (sizeof(T) != t.size) KX_THROW(Err::ulPixelTokenUnreadable, "%s", word);
        if (t.colour) *colour = true;
      }
    if (std::fscanf(f, "%d %d %d %d", firstLine, lastLine, firstColumn, lastColumn) != 4)
      KX_THROW0(Err::ulPixelTokenUnreadable);
    if (*lastLine < *firstLine || *lastColumn < *firstColumn) KX_THROW0(Err::ulPixelTokenUnreadable);
  }
  KX_CATCH
}

template <class T>
void TPlane<T>::readFileAscii(const char* name, bool alloc) {
  KX_TRY {
    std::FILE* f = std::fopen(name ? name : "", "r");
    if (!f) KX_THROW(Err::ulFileOpenRead, "%s", name ? name : "");
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> closer(f, std::fclose);
    int fc = 0, lc = 0, fl = 0, ll = 0;
    bool colour = false;
    vReadHeader2(f, &fc, &lc, &fl, &ll, &colour);
    const long long lines = static_cast<long long>(ll) - fl + 1, columns = static_cast<long long>(lc) - fc + 1;
    if (!alloc) {
      if (getLines() != lines) KX_THROW(Err::ulFileLinesDiffer, "Lines=%d != _Lines=%lld", getLines(), lines);
      if (getColumns() != columns)
        KX_THROW(Err::ulFileColumnsDiffer, "Columns=%d != _Columns=%lld", getColumns(), columns);
      if (getFirstLine() != fl) KX_THROW(Err::ulFileFirstLineDiffers, "FirstLine=%d != _FirstLine=%d", getFirstLine(), fl);
      if (getFirstColumn() != fc)
        KX_THROW(Err::ulFileFirstColumnDiffers, "FirstColumn=%d != _FirstColumn=%d", getFirstColumn(), fc);
    } else {
      // Every value takes a byte at least: a header that claims more than
      // the file could hold is refused before anything is allocated.
      struct stat st{};
      const long long values = lines * columns * (colour ? 3 : TTraits::iValuesPerPixel);
      if (lines > INT32_MAX || columns > INT32_MAX || ::fstat(::fileno(f), &st) != 0 || values > st.st_size)
        KX_THROW(Err::ulPixelTokenUnreadable, "%s", name);
      this->alloc(static_cast<int>(lines), static_cast<int>(columns), fl, fc, static_cast<int>(columns));
    }
    const int perPixel = colour ? 3 : TTraits::iValuesPerPixel;
    char word[256];
    std::string text;
    for (int l = 0; l < getLines(); ++l) {
      T* row = (*this)[getFirstLine() + l] + getFirstColumn();
      for (int k = 0; k < getColumns(); ++k) {
        text.clear();
        for (int v = 0; v < perPixel; ++v) {
          if (std::fscanf(f, "%255s", word) != 1) KX_THROW(Err::ulPixelTokenUnreadable, "%s", name);
          text += word;
          text += ' ';
        }
        TTraits::str2Pixel(text.c_str(), &row[k]);
      }
    }
  }
  KX_CATCH
}

template <class T>
void TPlane<T>::vLine2Str(char* out, int line, int c1, int c2) const {
  std::string s;
  char pixel[iPixelStrSize];
  for (int c = c1; c <= c2; ++c) {
    vPixel2Str(&(*this)[line][c], pixel);
    s += pixel;
    s += c < c2 ? '\t' : '\n';
  }
  std::memcpy(out, s.c_str(), s.size() + 1);
}

template <class T>
void TPlane<T>::vLine2Str2(char* out, int line, int c1, int c2) const {
  std::string s;
  char pixel[iPixelStrSize];
  for (int c = c1; c <= c2; ++c) {
    vPixel2Str2(&(*this)[line][c], pixel);
    s += pixel;
    s += c < c2 ? '\t' : '\n';
  }
  std::memcpy(out, s.c_str(), s.size() + 1);
}

template <class T>
void TPlane<T>::vHeader2String(std::string& out, int l1, int l2, int c1, int c2, bool& colourValues) const {
  if (!TTraits::bColor) colourValues = false;
  out.clear();
  if (colourValues) {
    const TPixelColorSpace& cs = rGetPixelColorSpace();
    std::string refName;
    double ref[3];
    referenceOf(cs, refName, ref);
    const kx::platform::CNumericScope cLocale;
    char line[512];
    std::snprintf(line, sizeof line, "\"%s\"\t\"%s\"\n", "ColorSpace", TPixelColorSpace::cpGetColorSpaceName(cs.uGetToFlag()));
    std::string head = line;
    std::snprintf(line, sizeof line, "\"%s\"\t\"%s\"\t%f\t%f\t%f\n", "RefColor", refName.c_str(), ref[0], ref[1], ref[2]);
    head += line;
    if (TLanguage::isDeutsch())
      for (int n = 0, i = 0; n < 3 && i < static_cast<int>(head.size()); ++i)
        if (head[i] == '.') head[i] = ',', ++n;
    out += head;
  }
  char line[128];
  std::snprintf(line, sizeof line, "%s\n%d\t%d\t%d\t%d\n", textTypeWord<T>(), l1, l2, c1, c2);
  out += line;
}

template <class T>
void TPlane<T>::vRect2String(std::string& out, int l1, int l2, int c1, int c2, bool colourValues) const {
  KX_TRY {
    if (!isValid()) KX_THROW0(Err::ulPlaneNotValid);
    vHeader2String(out, l1, l2, c1, c2, colourValues);
    l1 = std::max(l1, getFirstLine());
    l2 = std::min(l2, getFirstLine() + getLines() - 1);
    c1 = std::max(c1, getFirstColumn());
    c2 = std::min(c2, getFirstColumn() + getColumns() - 1);
    std::vector<char> buffer(static_cast<std::size_t>(std::max(0, c2 - c1 + 1)) * iPixelStrSize + 2);
    for (int l = l1; l <= l2 && c1 <= c2; ++l) {
      if (colourValues)
        vLine2Str2(buffer.data(), l, c1, c2);
      else
        vLine2Str(buffer.data(), l, c1, c2);
      out += buffer.data();
    }
  }
  KX_CATCH
}

template <class T>
void TPlane<T>::vRect2AsciiFile(const char* name, bool overwrite, int l1, int l2, int c1, int c2,
                                bool colourValues) const {
  KX_TRY {
    if (fileExists(name) && !overwrite) KX_THROW(Err::ulTextFileExists, "%s", name);
    if (!isValid()) KX_THROW0(Err::ulPlaneNotValid);
    l1 = std::max(l1, getFirstLine());
    l2 = std::min(l2, getFirstLine() + getLines() - 1);
    c1 = std::max(c1, getFirstColumn());
    c2 = std::min(c2, getFirstColumn() + getColumns() - 1);
    std::string text;
    vRect2String(text, l1, l2, c1, c2, colourValues);
    kx::platform::AtomicFile out;
    if (!out.open(name) || !out.write(text) || !out.commit())
      KX_THROW(Err::ulFileWriteFailed, "%s: %s", name, out.error().c_str());
  }
  KX_CATCH
}

template <class T>
void TPlane<T>::vPic2AsciiFile(const char* name, bool overwrite, bool colourValues) const {
  vRect2AsciiFile(name, overwrite, getFirstLine(), getFirstLine() + getLines() - 1, getFirstColumn(),
                  getFirstColumn() + getColumns() - 1, colourValues);
}

template <class T>
void TPlane<T>::vRegion2AsciiFile(const CRectangle& r, const char* name, bool overwrite, bool colourValues) const {
  vRect2AsciiFile(name, overwrite, r.iFirstLine, r.iLastLine, r.iFirstColumn, r.iLastColumn, colourValues);
}

// ---------------------------------------------------------------- clipboard

namespace {
template <class T>
unsigned nativeFormat() {
  return TKxClipboard::uRegisterFormat((std::string("TPlane<") + TPixelTraits<T>::cpTypeName + ">").c_str());
}
}  // namespace

template <class T>
void TPlane<T>::vRect2Clipboard(int l1, int l2, int c1, int c2) const {
  KX_TRY {
    proofArea(l1, l2, c1, c2);
    const std::size_t lineBytes = static_cast<std::size_t>(c2 - c1 + 1) * sizeof(T);
    std::vector<char> block(16 + lineBytes * static_cast<std::size_t>(l2 - l1 + 1));
    const int32_t head[4] = {l1, l2, c1, c2};
    std::memcpy(block.data(), head, 16);
    for (int l = l1; l <= l2; ++l)
      std::memcpy(block.data() + 16 + static_cast<std::size_t>(l - l1) * lineBytes, (*this)[l] + c1, lineBytes);
    TKxClipboard::vSetData(nativeFormat<T>(), block.data(), block.size());
  }
  KX_CATCH
}

template <class T>
void TPlane<T>::vPic2Clipboard() const {
  vRect2Clipboard(getFirstLine(), getFirstLine() + getLines() - 1, getFirstColumn(), getFirstColumn() + getColumns() - 1);
}

template <class T>
bool TPlane<T>::bHaveClipboardData() {
  return TKxClipboard::bHasFormat(nativeFormat<T>());
}

template <class T>
void TPlane<T>::vFromClipboard() {
  KX_TRY {
    const std::vector<char> block = TKxClipboard::vGetData(nativeFormat<T>());
    if (block.size() < 16) KX_THROW(Err::ulClipboardBlock, "Size=%zu", block.size());
    int32_t h[4];
    std::memcpy(h, block.data(), 16);
    const long long lines = static_cast<long long>(h[1]) - h[0] + 1, columns = static_cast<long long>(h[3]) - h[2] + 1;
    if (lines < 1 || columns < 1 ||
        static_cast<unsigned long long>(lines) * static_cast<unsigned long long>(columns) * sizeof(T) != block.size() - 16)
      KX_THROW(Err::ulClipboardBlock, "Size=%zu", block.size());
    this->alloc(static_cast<int>(lines), static_cast<int>(columns), h[0], h[2], static_cast<int>(columns));
    const std::size_t lineBytes = static_cast<std::size_t>(columns) * sizeof(T);
    for (int l = 0; l < lines; ++l)
      std::memcpy((*this)[h[0] + l] + h[2], block.data() + 16 + static_cast<std::size_t>(l) * lineBytes, lineBytes);
    setTimeStamp();
  }
  KX_CATCH
}

template <class T>
const char* TPlane<T>::getFileExtension() {
  return fileFilter<T>();
}

template <class T>
void TPlane<T>::vGetFileExtension(char* out) {
  std::string patterns;
  const std::string filter = getFileExtension();
  for (std::size_t open = filter.find('('); open != std::string::npos; open = filter.find('(', open + 1)) {
    const std::size_t close = filter.find(')', open);
    if (close == std::string::npos) break;
    patterns += filter.substr(open + 1, close - open - 1) + " ";
  }
  std::memcpy(out, patterns.c_str(), patterns.size() + 1);
}

#define KX_FILES(T)                                                                                     \
  template void TPlane<T>::writeFile(const char*, bool) const;                                          \
  template void TPlane<T>::readFile(const char*, bool);                                                 \
  template void TPlane<T>::readFileAscii(const char*, bool);                                            \
  template void TPlane<T>::readFileBinaer(const char*, bool);                                           \
  template void TPlane<T>::insertFile(const char*);                                                     \
  template void TPlane<T>::writeSubFile(const char*, const CRectangle&, bool) const;                    \
  template void TPlane<T>::vProofWriteable(const char*, bool) const;                                    \
  template void TPlane<T>::vFormatHeader(char*) const;                                                  \
  template void TPlane<T>::vFormatValueUnit(char*) const;                                               \
  template void TPlane<T>::vReadHeader(const char*, const char*, int&, int&, int&, int&);               \
  template void TPlane<T>::vReadValueUnit(const char*);                                                 \
  template void TPlane<T>::vReadHeader2(std::FILE*, int*, int*, int*, int*, bool*);                     \
  template void TPlane<T>::vPic2AsciiFile(const char*, bool, bool) const;                               \
  template void TPlane<T>::vRect2AsciiFile(const char*, bool, int, int, int, int, bool) const;          \
  template void TPlane<T>::vRegion2AsciiFile(const CRectangle&, const char*, bool, bool) const;         \
  template void TPlane<T>::vRect2String(std::string&, int, int, int, int, bool) const;                  \
  template void TPlane<T>::vHeader2String(std::string&, int, int, int, int, bool&) const;               \
  template void TPlane<T>::vLine2Str(char*, int, int, int) const;                                       \
  template void TPlane<T>::vLine2Str2(char*, int, int, int) const;                                      \
  template void TPlane<T>::vPic2Clipboard() const;                                                      \
  template void TPlane<T>::vRect2Clipboard(int, int, int, int) const;                                   \
  template bool TPlane<T>::bHaveClipboardData();                                                        \
  template void TPlane<T>::vFromClipboard();                                                            \
  template const char* TPlane<T>::getFileExtension();                                                   \
  template void TPlane<T>::vGetFileExtension(char*);
KX_FOR_EACH_PIXEL_TYPE(KX_FILES)
#undef KX_FILES

}  // namespace Rastrix
