#pragma once

#include <QColor>
#include <QString>
#include <QTextDocument>

namespace tarvo::skarnvisor::app {

/// A page of the manual that lies in the program, as Markdown; empty where there is no such page.
QString manualPage(const QString &name);

/// Makes the pictures of a page no wider than `width` pixels and gives its links a colour.
void fitPage(QTextDocument &page, int width, const QColor &links);

}  // namespace tarvo::skarnvisor::app
