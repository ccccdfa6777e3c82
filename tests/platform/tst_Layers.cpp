// tests/platform/tst_Layers.cpp
// Reads every #include line of the rooms and names those that go upward.

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QHash<QString, QStringList>& Allowed()
{
    static const QHash<QString, QStringList> allowed{
        {u"platform"_s, {}},
        {u"controls"_s, {u"platform"_s}},
        {u"app"_s, {u"platform"_s}},
        {u"store"_s, {u"app"_s, u"platform"_s}},
        {u"board"_s, {u"store"_s, u"app"_s, u"platform"_s}},
        {u"load"_s, {u"board"_s, u"store"_s, u"app"_s, u"platform"_s}},
        {u"viewer"_s, {u"board"_s, u"store"_s, u"app"_s, u"platform"_s}},
        {u"query"_s, {u"app"_s, u"controls"_s, u"platform"_s}},
        {u"settings_ui"_s, {u"board"_s, u"store"_s, u"app"_s, u"controls"_s, u"platform"_s}},
        {u"mainwin"_s,
         {u"query"_s, u"settings_ui"_s, u"load"_s, u"viewer"_s, u"board"_s, u"store"_s, u"app"_s, u"controls"_s,
          u"platform"_s}},
        {u"boardd"_s, {u"platform"_s}},
        {u"sqlshell"_s, {u"platform"_s}},
    };
    return allowed;
}

/// Rooms whose logic runs without a display.
bool KnowsNoWidget(const QString& Room)
{
    return QStringList{u"app"_s, u"store"_s, u"board"_s, u"viewer"_s}.contains(Room);
}

QStringList FaultsOf(const QString& Path, const QString& Room)
{
    static const QRegularExpression own(u"^\\s*#\\s*include\\s*\"([a-z_]+)/"_s);
    static const QRegularExpression widget(
        u"^\\s*#\\s*include\\s*<Q(Widget|Application|Dialog|MessageBox|MainWindow|TreeView|TextEdit|Menu|Action)>"_s);
    QFile file(Path);
    QStringList faults;
    if (!file.open(QIODevice::ReadOnly))
        return {u"cannot read "_s + Path};
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine());
        const QString into = own.match(line).captured(1);
        const bool foreign = Allowed().contains(into) && into != Room && !Allowed().value(Room).contains(into);
        if (foreign || (KnowsNoWidget(Room) && widget.match(line).hasMatch()))
            faults << Path + u": "_s + line.trimmed();
    }
    return faults;
}
} // namespace

class tst_Layers : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void NothingIncludesUpward();
};

void tst_Layers::NothingIncludesUpward()
{
    const QString root = QStringLiteral(TAVORA_SOURCE_DIR);
    QStringList faults;
    int files = 0;
    for (auto room = Allowed().keyBegin(); room != Allowed().keyEnd(); ++room) {
        QDirIterator walk(root + u'/' + *room, {u"*.h"_s, u"*.cpp"_s}, QDir::Files, QDirIterator::Subdirectories);
        while (walk.hasNext()) {
            const QString path = walk.next();
            const bool main = *room == u"app"_s && walk.fileName().startsWith(u"Main"_s); // start-up knows every room
            if (!main)
                faults << FaultsOf(path, *room);
            ++files;
        }
    }
    QVERIFY2(files > 50, "the rooms were not found");
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(u'\n')));
}

QTEST_GUILESS_MAIN(tst_Layers)
#include "tst_Layers.moc"
