#include "default/families/default_sdk_demo_parser.h"

namespace tarvo::skarnvisor {

QString DefaultDemoFrameRenderBuffer::toolBoxSource() const { return QStringLiteral("ToolBox.qml"); }

void DefaultDemoFrameRenderBuffer::addColumnAttribute(std::string, int) {}

DefaultDemoParser::DefaultDemoParser(QObject *parent) : DefaultSDKParser(parent, nullptr) {
  takeOver(new DefaultDemoFrameRenderBuffer(this));
}

DefaultDemoParser::DefaultDemoParser() : DefaultDemoParser(nullptr) {}

DefaultDemoProducer::DefaultDemoProducer(QObject *parent) : DefaultSDKProducer(parent) {}

DefaultDemoProducer::DefaultDemoProducer() : DefaultDemoProducer(nullptr) {}

void DefaultDemoProducer::operator()() {}

}  // namespace tarvo::skarnvisor
