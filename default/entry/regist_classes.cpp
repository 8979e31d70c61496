#include "default/entry/regist_classes.h"

#include "contracts/host/plugin.h"
#include "contracts/host/registration.h"
#include "default/entry/default_sdk_buffer_loader.h"
#include "default/families/default_sdk_FMCW_parser.h"
#include "default/families/default_sdk_KR_parser.h"
#include "default/families/default_sdk_KR_producer.h"
#include "default/families/default_sdk_LM_parser.h"
#include "default/families/default_sdk_LM_producer.h"
#include "default/families/default_sdk_NB_parser.h"
#include "default/families/default_sdk_QS_parser.h"
#include "default/families/default_sdk_VDG_parser.h"
#include "default/models/specific_table_model.h"
#include "default/pipeline/default_sdk_parser.h"
#include "default/pipeline/default_sdk_producer.h"
#include "default/point_files/default_pcd_file_loader.h"
#include "default/point_files/default_pcd_loader.h"
#include "default/point_files/default_pcd_parser.h"
#include "default/point_files/default_pcd_producer.h"

namespace tarvo::skarnvisor {

const std::array<const QMetaObject *, 16> &registeredClasses() {
  static const std::array<const QMetaObject *, 16> classes{
      &DefaultPcdLoader::staticMetaObject,     &DefaultSDKLoader::staticMetaObject,
      &DefaultPcdFileLoader::staticMetaObject, &DefaultPcdProducer::staticMetaObject,
      &DefaultPcdParser::staticMetaObject,     &DefaultSDKNetLoader::staticMetaObject,
      &DefaultSDKProducer::staticMetaObject,   &DefaultSDKParser::staticMetaObject,
      &DefaultKRProducer::staticMetaObject,    &DefaultKRParser::staticMetaObject,
      &DefaultLMParser::staticMetaObject,      &DefaultLMProducer::staticMetaObject,
      &DefaultVDGParser::staticMetaObject,     &DefaultQSParser::staticMetaObject,
      &DefaultNBParser::staticMetaObject,      &DefaultFMCWParser::staticMetaObject,
  };
  return classes;
}

}  // namespace tarvo::skarnvisor

extern "C" void regist_classes() {
  using namespace tarvo::skarnvisor;
  qRegisterMetaType<ColumnModel *>();
  for (const QMetaObject *metaObject : registeredClasses())
    Registration::regist(QString::fromLatin1(metaObject->className()), metaObject);
}
