#include "default/point_files/default_pcd_file_loader.h"

namespace tarvo::skarnvisor {

DefaultPcdFileLoader::DefaultPcdFileLoader(QObject *parent) : Functor(parent) {}

DefaultPcdFileLoader::DefaultPcdFileLoader() : DefaultPcdFileLoader(nullptr) {}

DefaultPcdFileLoader::~DefaultPcdFileLoader() = default;

}  // namespace tarvo::skarnvisor
