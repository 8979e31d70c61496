#include "default/families/default_sdk_VDG_parser.h"

namespace tarvo::skarnvisor {

QString DefaultVDGFrameRenderBuffer::initialFunctionSource() const { return QStringLiteral("VDGInitialFunction.qml"); }

DefaultVDGParser::DefaultVDGParser(QObject *parent) : DefaultSDKParser(parent, nullptr) {
  takeOver(new DefaultVDGFrameRenderBuffer(this));
}

DefaultVDGParser::DefaultVDGParser() : DefaultVDGParser(nullptr) {}

}  // namespace tarvo::skarnvisor
