// mainwin/CFileDrop.cpp
// Files that are dropped on the main window.

#include "mainwin/CFileDrop.h"

#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

#include <utility>

using namespace Qt::StringLiterals;

namespace
{
/// Empty when not all of it is files.
QStringList LocalFiles(const QMimeData& Data)
{
    QStringList paths;
    const QList<QUrl> urls = Data.urls();
    for (const QUrl& url : urls) {
        const QString path = url.toLocalFile(); // empty for an address
        if (path.isEmpty() || path.startsWith("//"_L1) || !QFileInfo(path).isFile())
            return {};
        paths << path;
    }
    return paths;
}
} // namespace

CFileDrop::CFileDrop(QWidget& Window, std::function<bool()> IsReady)
    : QObject(&Window)
    , m_isReady(std::move(IsReady))
{
    Window.setAcceptDrops(true);
    Window.installEventFilter(this);
}

void CFileDrop::AddTextField(QWidget& Field) { Field.installEventFilter(this); }

bool CFileDrop::eventFilter(QObject* Watched, QEvent* Event)
{
    switch (Event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        break;
    default:
        return false;
    }
    auto& drop = static_cast<QDropEvent&>(*Event);
    if (Watched != parent() && !drop.mimeData()->hasUrls())
        return false;
    if (Event->type() == QEvent::DragEnter)
        m_paths = LocalFiles(*drop.mimeData()); // asking the disk at every move would make the pointer halt
    Answer(drop);
    return true;
}

/// Copying is what an import does; a source that only offers to move its files would delete them afterwards.
void CFileDrop::Answer(QDropEvent& Event)
{
    if (m_paths.isEmpty() || !(Event.possibleActions() & Qt::CopyAction) || !m_isReady()) {
        Event.ignore();
        return;
    }
    Event.setDropAction(Qt::CopyAction);
    Event.accept();
    if (Event.type() == QEvent::Drop)
        QMetaObject::invokeMethod(
            this, [this, paths = std::exchange(m_paths, {})] { Q_EMIT FilesDropped(paths); }, Qt::QueuedConnection);
}
