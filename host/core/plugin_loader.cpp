#include "host/core/plugin_loader.h"

#include <QFileInfo>
#include <QLibrary>

#include "contracts/host/plugin.h"
#include "contracts/host/registration.h"

namespace tarvo::skarnvisor {

QString loadPluginLibrary(const QString &libraryPath) {
  if (!QFileInfo(libraryPath).isFile()) return QStringLiteral("The plug-in %1 does not exist.").arg(libraryPath);
  QLibrary library(libraryPath);
  library.setLoadHints(QLibrary::ResolveAllSymbolsHint);
  if (!library.load()) return QStringLiteral("The plug-in cannot be loaded: %1").arg(library.errorString());
  const auto registerClasses = reinterpret_cast<void (*)()>(library.resolve(registClassesSymbol));
  if (registerClasses == nullptr) {
    return QStringLiteral("The library %1 is no plug-in: it has no function %2.")
        .arg(libraryPath, QLatin1String(registClassesSymbol));
  }
  registerClasses();
  if (Registration::classNames().isEmpty())
    return QStringLiteral("The plug-in %1 registered no class.").arg(libraryPath);
  return {};
}

}  // namespace tarvo::skarnvisor
