#include "kxexception/TKxTable.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "kxexception/KxError.h"
#include "platform/AtomicFile.h"

namespace {

constexpr unsigned long ulTableIndex = 0x5100000UL;

std::size_t cellSize(const TKxTable::TItem& it) {
  switch (it.type) {
    case TKxTable::eInt: return sizeof(int32_t);
    case TKxTable::eDouble: return sizeof(double);
    case TKxTable::eBool: return 1;
    default: return std::size_t{it.length} + 1;
  }
}

// True if the format holds exactly one conversion, of a number, with no '*'.
bool bOneNumber(const std::string& f) {
  int conversions = 0;
  for (std::size_t i = 0; i < f.size(); ++i) {
    if (f[i] != '%') continue;
    if (i + 1 < f.size() && f[i + 1] == '%') {
      ++i;
      continue;
    }
    std::size_t j = i + 1;
    while (j < f.size() && std::strchr("-+ #0123456789.", f[j])) ++j;
    const bool longForm = j < f.size() && f[j] == 'l';  // "%lf"; "%ld" would want a long
    if (longForm) ++j;
    if (j >= f.size() || !std::strchr(longForm ? "eEfFgGaA" : "diouxXeEfFgGaA", f[j])) return false;
    ++conversions;
    i = j;
  }
  return conversions == 1;
}

std::string formatNumber(const std::string& format, double v, bool integer) {
  char text[512];
  if (format.size() > 2 && format[0] == '%' && format[1] == 't') {
    int digits = std::atoi(format.c_str() + 2);
    if (digits < 1 || digits > 17) digits = 6;
    std::snprintf(text, sizeof text, "%.*g", digits, v);
  } else if (format.empty()) {
    if (integer)
      std::snprintf(text, sizeof text, "%d", static_cast<int>(v));
    else
      std::snprintf(text, sizeof text, "%g", v);
  } else if (!bOneNumber(format)) {
    std::snprintf(text, sizeof text, "%g", v);
  } else {
    // A printf form of one number; which kind it wants decides the argument.
    const std::size_t conv = format.find_last_of("diouxXeEfFgGaA");
    const bool wantsInt = conv != std::string::npos && std::strchr("diouxX", format[conv]) != nullptr;
    if (wantsInt)
      std::snprintf(text, sizeof text, format.c_str(), static_cast<int>(v));
    else
      std::snprintf(text, sizeof text, format.c_str(), v);
  }
  return text;
}

}  // namespace

void TKxTable::vAddColumn(TItem item) {
  KX_TRY {
    if (lineCount_ != 0) KX_THROW(ulTableIndex, "columns cannot be added to a table with lines");
    item.offset = static_cast<unsigned>(lineSize_);
    lineSize_ += cellSize(item);
    items_.push_back(std::move(item));
  }
  KX_CATCH
}

TKxTable::TItem& TKxTable::addColumn(const std::string& name, eType type, unsigned length, eAdjust adjust,
                                     const std::string& format) {
  TItem it;
  it.name = name;
  it.type = type;
  it.length = length;
  it.adjust = adjust;
  it.format = format;
  vAddColumn(std::move(it));
  return items_.back();
}

void TKxTable::vClear() {
  items_.clear();
  lineSize_ = 0;
  vClearLines();
}

void TKxTable::vClearLines() {
  data_.clear();
  lineCount_ = 0;
}

const TKxTable::TItem& TKxTable::item(std::size_t column) const {
  KX_TRY {
    if (column >= items_.size()) KX_THROW(ulTableIndex, "column %zu out of range", column);
    return items_[column];
  }
  KX_CATCH
}

TKxTable::TItem& TKxTable::item(std::size_t column) {
  return const_cast<TItem&>(static_cast<const TKxTable*>(this)->item(column));
}

int TKxTable::iFindColumn(const std::string& name) const {
  for (std::size_t i = 0; i < items_.size(); ++i)
    if (items_[i].name == name) return static_cast<int>(i);
  return -1;
}

std::size_t TKxTable::appendLine() {
  data_.resize(data_.size() + lineSize_, 0);
  return lineCount_++;
}

const unsigned char* TKxTable::line(std::size_t index) const {
  KX_TRY {
    if (index >= lineCount_) KX_THROW(ulTableIndex, "line %zu out of range", index);
    return data_.data() + index * lineSize_;
  }
  KX_CATCH
}

unsigned char* TKxTable::line(std::size_t index) {
  return const_cast<unsigned char*>(static_cast<const TKxTable*>(this)->line(index));
}

const unsigned char* TKxTable::cell(std::size_t l, std::size_t column, eType want) const {
  KX_TRY {
    const TItem& it = item(column);
    if (it.type != want) KX_THROW(ulTableIndex, "column %zu has another type", column);
    return line(l) + it.offset;
  }
  KX_CATCH
}

unsigned char* TKxTable::cell(std::size_t l, std::size_t column, eType want) {
  return const_cast<unsigned char*>(static_cast<const TKxTable*>(this)->cell(l, column, want));
}

void TKxTable::vSetString(std::size_t l, std::size_t column, const std::string& v) {
  unsigned char* p = cell(l, column, eString);
  const std::size_t n = std::min<std::size_t>(v.size(), items_[column].length);
  std::memset(p, 0, std::size_t{items_[column].length} + 1);
  std::memcpy(p, v.data(), n);
}
void TKxTable::vSetInt(std::size_t l, std::size_t column, int32_t v) {
  std::memcpy(cell(l, column, eInt), &v, sizeof v);
}
void TKxTable::vSetDouble(std::size_t l, std::size_t column, double v) {
  std::memcpy(cell(l, column, eDouble), &v, sizeof v);
}
void TKxTable::vSetBool(std::size_t l, std::size_t column, bool v) { *cell(l, column, eBool) = v ? 1 : 0; }

std::string TKxTable::sGetString(std::size_t l, std::size_t column) const {
  const unsigned char* p = cell(l, column, eString);
  return std::string(reinterpret_cast<const char*>(p), strnlen(reinterpret_cast<const char*>(p), items_[column].length));
}
int32_t TKxTable::iGetInt(std::size_t l, std::size_t column) const {
  int32_t v;
  std::memcpy(&v, cell(l, column, eInt), sizeof v);
  return v;
}
double TKxTable::dGetDouble(std::size_t l, std::size_t column) const {
  double v;
  std::memcpy(&v, cell(l, column, eDouble), sizeof v);
  return v;
}
bool TKxTable::bGetBool(std::size_t l, std::size_t column) const { return *cell(l, column, eBool) != 0; }

std::string TKxTable::sFormatCell(std::size_t l, std::size_t column) const {
  switch (item(column).type) {
    case eInt: return formatNumber(items_[column].format, iGetInt(l, column), true);
    case eDouble: return formatNumber(items_[column].format, dGetDouble(l, column), false);
    case eBool: return bGetBool(l, column) ? "1" : "0";
    default: return sGetString(l, column);
  }
}

std::vector<std::vector<std::string>> vTableToGrid(const TKxTable& table) {
  std::vector<std::vector<std::string>> grid(table.lines() + 1);
  for (const auto& it : table.items()) grid[0].push_back(it.name);
  for (std::size_t l = 0; l < table.lines(); ++l)
    for (std::size_t c = 0; c < table.columns(); ++c) grid[l + 1].push_back(table.sFormatCell(l, c));
  return grid;
}

std::string vTable2String(const TKxTable& table) {
  std::string out;
  for (const auto& row : vTableToGrid(table)) {
    for (std::size_t c = 0; c < row.size(); ++c) {
      if (c) out += '\t';
      out += row[c];
    }
    out += "\r\n";
  }
  return out;
}

bool vTableToFile(const TKxTable& table, const char* fileName) {
  return fileName && kx::platform::writeFileAtomic(fileName, vTable2String(table));
}

std::string TKxTableFrame::sText() const {
  if (!table_) return {};
  const auto grid = vTableToGrid(*table_);
  std::string out;
  for (const auto& row : grid) {
    for (std::size_t c = 0; c < row.size(); ++c) {
      const TKxTable::TItem& it = table_->item(c);
      const std::size_t width = std::max<std::size_t>(it.length, it.name.size());
      const std::string& s = row[c];
      const std::size_t pad = s.size() < width ? width - s.size() : 0;
      const std::size_t left = it.adjust == TKxTable::eRight ? pad : it.adjust == TKxTable::eCenter ? pad / 2 : 0;
      if (c) out += ' ';
      out.append(left, ' ');
      out += s;
      out.append(pad - left, ' ');
    }
    out += "\r\n";
  }
  return out;
}
