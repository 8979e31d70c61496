// Sets the point options at a render buffer, through its meta-object alone.
#include <QAbstractItemModel>
#include <QVariant>

#include "app/cli/filter_slots.h"
#include "app/cli/point_options.h"
#include "app/session/capture_session.h"

namespace tarvo::skarnvisor::app {
namespace {

QObject *modelOf(const RenderView &view, const char *property) {
  return view.buffer() != nullptr ? view.buffer()->property(property).value<QObject *>() : nullptr;
}

bool offers(const QObject &object, const char *signature) { return object.metaObject()->indexOfMethod(signature) >= 0; }

/// Has the points that are held tested again, each source by the operations that it has.
void filterAgain(QObject &buffer) {
  for (const char *pass : {"filterSinglePoints", "filterMultiPoints"})
    if (offers(buffer, QByteArray(pass).append("()"))) QMetaObject::invokeMethod(&buffer, pass, Qt::DirectConnection);
}

QString applyFilter(CaptureSession &session, const PointOptions &options) {
  QObject *const model = modelOf(session.view(), "filterModel");
  if (model == nullptr) return QStringLiteral("this source has no point filter");
  QVariantList limits;
  // A slot with equal limits takes no part where any may match.
  for (const FilterSlotRow &row : filterSlots)
    limits << (options.anySlotMayMatch ? 0.0 : row.low) << (options.anySlotMayMatch ? 0.0 : row.high);
  QStringList offered;
  for (const FilterSlotRow &row : filterSlots)
    if (model->property(row.flag).toInt() != 0) offered << QString::fromLatin1(row.name);
  for (const SlotRange &range : options.filter) {
    const QString name = QString::fromLatin1(filterSlots[range.slot].name);
    if (!offered.contains(name))
      return QStringLiteral("%1 has no filter \"%2\"; it has %3").arg(session.lidarType(), name, offered.join(", "));
    if (options.anySlotMayMatch && range.low == range.high)
      return QStringLiteral("where any range may match, one with two equal ends holds no point: \"%1\"").arg(name);
    limits[static_cast<int>(2 * range.slot)] = range.low;
    limits[static_cast<int>(2 * range.slot + 1)] = range.high;
  }
  constexpr int floatLimits = 2 * floatSlotCount;
  model->setProperty("filterMode", options.anySlotMayMatch ? 1 : 0);
  QMetaObject::invokeMethod(model, "setHighlight", Qt::DirectConnection, Q_ARG(bool, options.highlight));
  QMetaObject::invokeMethod(model, "setFilter", Qt::DirectConnection, Q_ARG(bool, true),
                            Q_ARG(QVariant, QVariant(limits.mid(0, floatLimits))),
                            Q_ARG(QVariant, QVariant(limits.mid(floatLimits))));
  filterAgain(*session.view().buffer());
  return {};
}

QString applyEcho(const RenderView &view, int echo) {
  const QObject *const model = modelOf(view, "echoModel");
  if (model == nullptr) return QStringLiteral("this source has no echoes to choose from");
  const QStringList titles = model->property("echoTitles").toStringList();
  if (echo >= titles.size()) {
    QStringList known;
    for (int i = 0; i < titles.size(); ++i) known << QStringLiteral("%1 (%2)").arg(i).arg(titles[i]);
    return QStringLiteral("there is no echo %1; there are %2").arg(echo).arg(known.join(", "));
  }
  QMetaObject::invokeMethod(view.buffer(), "setEchoModelReturnMode", Qt::DirectConnection, Q_ARG(int, echo));
  return {};
}

QString hideChannels(const RenderView &view, const std::vector<int> &channels) {
  const int rows = view.channelCount();
  for (const int channel : channels)
    if (channel > rows) return QStringLiteral("there is no channel %1; the lidar has 1 to %2").arg(channel).arg(rows);
  for (const int channel : channels)
    QMetaObject::invokeMethod(view.buffer(), "setDisplayedFlag", Qt::DirectConnection, Q_ARG(int, channel - 1),
                              Q_ARG(bool, false), Q_ARG(bool, channel == channels.back()));
  const auto *const table = qobject_cast<QAbstractItemModel *>(modelOf(view, "channelModel"));
  const bool shown = table == nullptr || table->index(channels.front() - 1, 0).data().toBool();
  return shown ? QStringLiteral("channels can be hidden only once corrections are loaded") : QString();
}

}  // namespace

QString applyPointOptions(CaptureSession &session, const PointOptions &options) {
  if (!options.any()) return {};
  const RenderView &view = session.view();
  if (view.isEmpty()) return QStringLiteral("the capture was closed");
  QString fault = applyTools(session, options.tools);
  if (fault.isEmpty() && !options.filter.empty()) fault = applyFilter(session, options);
  if (fault.isEmpty() && options.echo) fault = applyEcho(view, *options.echo);
  if (fault.isEmpty() && !options.hiddenChannels.empty()) fault = hideChannels(view, options.hiddenChannels);
  if (fault.isEmpty() && options.selection) {
    view.buffer()->setProperty("selectionMatrix", *options.selection);
    view.buffer()->setProperty("selectEnabled", true);
  }
  return fault;
}

}  // namespace tarvo::skarnvisor::app
