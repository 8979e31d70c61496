#include "app/window/manual_page.h"

#include <QFile>
#include <QImageReader>
#include <QTextBlock>
#include <QTextCursor>

namespace tarvo::skarnvisor::app {
namespace {

const QString folder = QStringLiteral(":/manual/");

QTextImageFormat fitted(QTextImageFormat picture, int width) {
  const QSize size = QImageReader(folder + picture.name()).size();
  if (size.isEmpty()) return picture;
  const int shown = qMin(width, size.width());
  picture.setWidth(shown);
  picture.setHeight(static_cast<qreal>(shown) * size.height() / size.width());
  return picture;
}

}  // namespace

QString manualPage(const QString &name) {
  QFile file(folder + name);
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void fitPage(QTextDocument &page, int width, const QColor &links) {
  struct Change {
    int from, to;
    QTextCharFormat format;
  };
  // A change of format moves the fragments, and tells that the text has changed.
  QVector<Change> changes;
  for (QTextBlock block = page.begin(); block.isValid(); block = block.next()) {
    for (auto part = block.begin(); !part.atEnd(); ++part) {
      const QTextFragment fragment = part.fragment();
      QTextCharFormat format = fragment.charFormat();
      if (format.isImageFormat()) format = fitted(format.toImageFormat(), width);
      if (format.isAnchor()) format.setForeground(links);
      if (format != fragment.charFormat())
        changes.append({fragment.position(), fragment.position() + fragment.length(), format});
    }
  }
  QTextCursor cursor(&page);
  for (const Change &change : changes) {
    cursor.setPosition(change.from);
    cursor.setPosition(change.to, QTextCursor::KeepAnchor);
    cursor.setCharFormat(change.format);
  }
}

}  // namespace tarvo::skarnvisor::app
