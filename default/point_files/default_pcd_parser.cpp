#include "default/point_files/default_pcd_parser.h"

namespace tarvo::skarnvisor {

DefaultPcdParser::DefaultPcdParser(QObject *parent) : Functor(parent) {}

DefaultPcdParser::DefaultPcdParser() : DefaultPcdParser(nullptr) {}

DefaultPcdParser::~DefaultPcdParser() = default;

}  // namespace tarvo::skarnvisor
