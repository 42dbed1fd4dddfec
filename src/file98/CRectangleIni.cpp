// The ini forms of CRectangle.
#include "file98/CRectangle.h"
#include "file98/File98Errors.h"
#include "file98/TIniFilename.h"
#include "file98/TKxStdIniFile.h"
#include "kxexception/KxError.h"

namespace {
void requireSection(TKxIniFile* ini, const char* section) {
  if (!ini || !section || !ini->bSectionExists(section))
    KX_THROW(kx::file98::ulRectIniSection, "Not found [%s]", section ? section : "");
}
}  // namespace

void CRectangle::readIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    requireSection(ini, section);
    iFirstColumn = ini->iReadInteger(section, "Left", iFirstColumn);
    iLastColumn = ini->iReadInteger(section, "Right", iLastColumn);
    iFirstLine = ini->iReadInteger(section, "Top", iFirstLine);
    iLastLine = ini->iReadInteger(section, "Bottom", iLastLine);
  }
  KX_CATCH
}

void CRectangle::writeIni(TKxIniFile* ini, const char* section) const {
  KX_TRY {
    requireSection(ini, section);
    ini->vWriteInteger(section, "Left", iFirstColumn);
    ini->vWriteInteger(section, "Right", iLastColumn);
    ini->vWriteInteger(section, "Top", iFirstLine);
    ini->vWriteInteger(section, "Bottom", iLastLine);
  }
  KX_CATCH
}

void CRectangle::readIni(const TIniFilename& name, const char* section) {
  KX_TRY {
    TKxStdIniFile ini(name);
    readIni(&ini, section);
  }
  KX_CATCH
}

void CRectangle::writeIni(const TIniFilename& name, const char* section) {
  KX_TRY {
    TKxStdIniFile ini(name);
    readIni(&ini, section);  // kept as it is: this form reads and writes nothing
  }
  KX_CATCH
}
