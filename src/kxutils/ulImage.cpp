#include "kxutils/ulImage.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

#include "kxutils/HandleTable.h"
#include "kxutils/KxUtilsErrors.h"

using namespace kxutils;
using namespace kxutils::detail;

namespace {

struct TImage {
  unsigned long type = 0;
  int lines = 0, columns = 0, firstLine = 0, firstColumn = 0, lineDistance = 0;
  unsigned char* first = nullptr;             // pixel (firstLine, firstColumn)
  std::shared_ptr<unsigned char[]> owned;     // own memory, shared with connected images
};

THandleTable<TImage, eKind::eImage>& table() {
  static THandleTable<TImage, eKind::eImage> t;
  return t;
}

std::size_t bytesPerPixel(unsigned long type) {
  static constexpr std::size_t sizes[] = {1, 2, 4, 3, 12, 4};
  return type < 6 ? sizes[type] : 0;
}

bool inside(const TImage& im, int line, int column) {
  return im.first && line >= im.firstLine && column >= im.firstColumn &&
         static_cast<int64_t>(line) < static_cast<int64_t>(im.firstLine) + im.lines &&
         static_cast<int64_t>(column) < static_cast<int64_t>(im.firstColumn) + im.columns;
}

unsigned char* address(const TImage& im, int line, int column) {
  const int64_t offset = (static_cast<int64_t>(line) - im.firstLine) * im.lineDistance + (column - im.firstColumn);
  return im.first + offset * static_cast<int64_t>(bytesPerPixel(im.type));
}

template <class T>
double read(const unsigned char* p) {
  T v;
  std::memcpy(&v, p, sizeof v);
  return static_cast<double>(v);
}

}  // namespace

unsigned long ulImage_CreateHandle(unsigned long type, void** handle) {
  if (!handle) return ulBadArgument;
  if (bytesPerPixel(type) == 0) return ulWrongType;
  return createHandle(table(), handle, [type] {
    auto im = std::make_unique<TImage>();
    im->type = type;
    return im;
  });
}

unsigned long ulImage_Alloc2(void* handle, int lines, int lineDistance, int firstLine, int firstColumn,
                             void* addr) {
  std::lock_guard<std::mutex> lock(tableMutex());
  TImage* im = table().find(handle);
  if (!im) return ulBadHandle;
  if (lines < 1 || lineDistance < 1) return ulBadArgument;
  std::shared_ptr<unsigned char[]> owned;
  unsigned char* first = static_cast<unsigned char*>(addr);
  if (!first) {
    const std::size_t pixels = static_cast<std::size_t>(lines) * static_cast<std::size_t>(lineDistance);
    if (pixels > SIZE_MAX / bytesPerPixel(im->type)) return ulBadArgument;
    const std::size_t bytes = pixels * bytesPerPixel(im->type);
    try {
      owned = std::shared_ptr<unsigned char[]>(new unsigned char[bytes]());
    } catch (const std::bad_alloc&) {
      return ulNoImage;
    }
    first = owned.get();
  }
  im->lines = lines;
  im->columns = lineDistance;
  im->lineDistance = lineDistance;
  im->firstLine = firstLine;
  im->firstColumn = firstColumn;
  im->first = first;
  im->owned = std::move(owned);
  return ulOk;
}

unsigned long ulImage_ConnectImage(void* handle, int lines, int columns, int firstLine, int firstColumn,
                                   void* source) {
  std::lock_guard<std::mutex> lock(tableMutex());
  TImage* im = table().find(handle);
  const TImage* src = table().find(source);
  if (!im || !src) return ulBadHandle;
  if (im->type != src->type) return ulWrongType;
  if (!src->first) return ulNoImage;
  if (lines < 1 || columns < 1) return ulBadArgument;
  const int64_t lastLine = static_cast<int64_t>(firstLine) + lines - 1;
  const int64_t lastColumn = static_cast<int64_t>(firstColumn) + columns - 1;
  if (!inside(*src, firstLine, firstColumn) || lastLine > INT32_MAX || lastColumn > INT32_MAX ||
      !inside(*src, static_cast<int>(lastLine), static_cast<int>(lastColumn)))
    return ulOutside;
  unsigned char* first = address(*src, firstLine, firstColumn);
  std::shared_ptr<unsigned char[]> owned = src->owned;
  im->lines = lines;
  im->columns = columns;
  im->lineDistance = src->lineDistance;
  im->firstLine = firstLine;
  im->firstColumn = firstColumn;
  im->first = first;
  im->owned = std::move(owned);
  return ulOk;
}

unsigned long ulImage_DeleteHandle(void** handle) { return deleteHandle(table(), handle); }

unsigned long ulImage_GetInfo(void* handle, TImageInfo* info) {
  if (!info) return ulBadArgument;
  std::lock_guard<std::mutex> lock(tableMutex());
  const TImage* im = table().find(handle);
  if (!im) return ulBadHandle;
  info->type = im->type;
  info->lines = im->lines;
  info->columns = im->columns;
  info->firstLine = im->firstLine;
  info->firstColumn = im->firstColumn;
  info->lineDistance = im->lineDistance;
  info->ownsMemory = im->owned != nullptr;
  return ulOk;
}

unsigned long ulImage_GetPixelAddress(void* handle, int line, int column, void** addr) {
  if (!addr) return ulBadArgument;
  std::lock_guard<std::mutex> lock(tableMutex());
  const TImage* im = table().find(handle);
  if (!im) return ulBadHandle;
  if (!im->first) return ulNoImage;
  if (!inside(*im, line, column)) return ulOutside;
  *addr = address(*im, line, column);
  return ulOk;
}

unsigned long ulImage_GetPixel(void* handle, int line, int column, double* values, int* count) {
  if (!values || !count) return ulBadArgument;
  std::lock_guard<std::mutex> lock(tableMutex());
  const TImage* im = table().find(handle);
  if (!im) return ulBadHandle;
  if (!im->first) return ulNoImage;
  if (!inside(*im, line, column)) return ulOutside;
  const unsigned char* p = address(*im, line, column);
  switch (im->type) {
    case 0: values[0] = p[0]; *count = 1; break;
    case 1: values[0] = read<uint16_t>(p); *count = 1; break;
    case 2: values[0] = read<float>(p); *count = 1; break;
    case 3:
      for (int i = 0; i < 3; ++i) values[i] = p[i];
      *count = 3;
      break;
    case 4:
      for (int i = 0; i < 3; ++i) values[i] = read<float>(p + 4 * i);
      *count = 3;
      break;
    default: values[0] = read<int32_t>(p); *count = 1; break;
  }
  return ulOk;
}

unsigned long ulImage_CountHandles(unsigned long* count) {
  if (!count) return ulBadArgument;
  std::lock_guard<std::mutex> lock(tableMutex());
  *count = table().size();
  return ulOk;
}
