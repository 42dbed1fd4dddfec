#include "rastrix/CATiff.h"

#include <cstdio>

#include "kxexception/KxError.h"
#include "platform/AtomicFile.h"
#include "rastrix/CTiff.h"

namespace {
const char* typeName(uint16_t type) {
  switch (type) {
    case TIFF::Byte: return "Byte";
    case TIFF::Ascii: return "Ascii";
    case TIFF::Short: return "Short";
    case TIFF::Long: return "Long";
    case TIFF::Rational: return "Rational";
    default: return "?";
  }
}
}  // namespace

const char* CATiffHeader::GetTagTypStr(uint16_t tag) { return TIFF::cpTagName(tag); }

std::string CATiffHeader::PrintTag(const CTag& t) {
  char row[128];
  std::snprintf(row, sizeof row, "%-29s %-7ld %-8s ", GetTagTypStr(t.tag), static_cast<long>(t.count), typeName(t.type));
  std::string out = row;
  if (t.type == TIFF::Ascii) {
    out += "\"" + std::string(t.data.begin(), t.data.end()) + "\"";
  } else if (t.type == TIFF::Rational) {
    for (uint32_t i = 0; i < t.count && i < 16; ++i) {
      const uint8_t* p = t.data.data() + 8u * i;
      uint32_t n = 0, d = 0;
      if (t.data.size() >= 8u * (i + 1)) {
        n = p[0] | (p[1] << 8) | (p[2] << 16) | (static_cast<uint32_t>(p[3]) << 24);
        d = p[4] | (p[5] << 8) | (p[6] << 16) | (static_cast<uint32_t>(p[7]) << 24);
      }
      out += std::to_string(n) + "/" + std::to_string(d) + " ";
    }
  } else {
    for (uint32_t i = 0; i < t.count && i < 16; ++i) out += std::to_string(t.uGetValue(i)) + " ";
    if (t.count > 16) out += "...";
    if (t.tag == TIFF::Compression) out += std::string("(") + TIFF::cpCompressionName(static_cast<uint16_t>(t.uGetValue(0))) + ")";
  }
  return out + "\n";
}

std::string CATiff::sAnalyse(const char* in, unsigned long* code) {
  CRTiff r;
  const unsigned long c = r.OpenFile(in);
  if (code) *code = c;
  std::string out = std::string("File: ") + (in ? in : "") + "\n";
  if (c) {
    TKxReportLastError(false);
    char line[64];
    std::snprintf(line, sizeof line, "Error 0x%08lx\n", c);
    return out + line;
  }
  char line[128];
  std::snprintf(line, sizeof line, "Size: %llu bytes, directories: %d\n", static_cast<unsigned long long>(r.uGetFileSize()),
                r.CountIFD());
  out += line;
  for (short i = 0; i < r.CountIFD(); ++i) {
    std::snprintf(line, sizeof line, "Directory %d\n", i);
    out += line;
    for (const CTag& t : r.pGetIFD(i)->tags) out += CATiffHeader::PrintTag(t);
  }
  return out;
}

unsigned long CATiff::Analyse(const char* in, const char* out) {
  unsigned long code = 0;
  const std::string text = sAnalyse(in, &code);
  if (!kx::platform::writeFileAtomic(out ? out : "", text)) return kxtiff::ulOpenWrite;
  return code;
}
