// tests/mainwin/tst_CIconSet.cpp
// The painted pictures: each draws something of its own on light and dark; foreign icon files are bounded.

#include "mainwin/CIconSet.h"
#include "tests/support/Files.h"

#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPalette>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

QImage Draw(const QString& Name, int Side, QIcon::Mode Mode = QIcon::Normal)
{
    return CIconSet::Picture(Name)
        .pixmap(QSize(Side, Side), 1.0, Mode)
        .toImage()
        .convertToFormat(QImage::Format_ARGB32);
}

// Pixels of the picture, composed onto Ground, that stand out from it.
int VisiblePixels(const QImage& Picture, const QColor& Ground)
{
    int count = 0;
    for (int y = 0; y < Picture.height(); ++y) {
        for (int x = 0; x < Picture.width(); ++x) {
            const QColor pixel = Picture.pixelColor(x, y);
            const double difference = pixel.alphaF() * std::abs(pixel.lightnessF() - Ground.lightnessF());
            count += difference > 0.25 ? 1 : 0;
        }
    }
    return count;
}

QPalette Shades(const QColor& Ground, const QColor& Text)
{
    QPalette palette;
    palette.setColor(QPalette::Window, Ground);
    palette.setColor(QPalette::WindowText, Text);
    return palette;
}

} // namespace

class tst_CIconSet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }
    void cleanup() { QGuiApplication::setPalette(QPalette()); }
    void StandOutOnAnyGround();
    void AreDifferent();
    void StartEmptyAroundTheShape();
    void FromFile();
};

void tst_CIconSet::StandOutOnAnyGround()
{
    for (const auto& [ground, text] : {std::pair(QColor(0xef, 0xef, 0xef), QColor(Qt::black)),
                                       std::pair(QColor(0x2b, 0x2b, 0x2e), QColor(0xe6, 0xe6, 0xe6))}) {
        QGuiApplication::setPalette(Shades(ground, text));
        for (const QString& name : CIconSet::Names())
            QVERIFY2(VisiblePixels(Draw(name, 20), ground) >= 30, qPrintable(name));
    }
}

void tst_CIconSet::AreDifferent()
{
    QHash<QByteArray, QString> seen;
    for (const QString& name : CIconSet::Names()) {
        const QImage picture = Draw(name, 32);
        const QByteArray bytes(reinterpret_cast<const char*>(picture.constBits()), picture.sizeInBytes());
        // One picture, two names: the button shows a board until it has one; the fourth frame is the program's sign.
        const bool isTwin = name == u"Board" || name == u"SMALLICON4";
        QVERIFY2(isTwin || !seen.contains(bytes), qPrintable(name + u' ' + seen.value(bytes)));
        seen.insert(bytes, name);
    }
    QVERIFY(CIconSet::Picture(u"SMALLICON5"_s).isNull());
}

void tst_CIconSet::StartEmptyAroundTheShape()
{
    QCOMPARE(Draw(u"Forword"_s, 40).pixelColor(0, 0).alpha(), 0);
    QCOMPARE(Draw(u"Forword"_s, 40).size(), QSize(40, 40));
    QVERIFY(Draw(u"Load"_s, 20, QIcon::Disabled) != Draw(u"Load"_s, 20));
}

void tst_CIconSet::FromFile()
{
    QTemporaryDir folder;
    const QString good = folder.filePath(u"good.bmp"_s);
    QImage picture(16, 16, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QVERIFY(picture.save(good, "BMP"));
    QCOMPARE(CIconSet::FromFile(good).pixmap(16).toImage().pixelColor(8, 8), QColor(Qt::red));

    QFile file(good);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QByteArray huge = bytes;
    huge.replace(18, 4, QByteArray("\xff\xff\xff\x00", 4)); // a width of 16 million
    mdlFiles::Write(folder.filePath(u"huge.bmp"_s), huge);
    mdlFiles::Write(folder.filePath(u"text.bmp"_s), "no picture");
    mdlFiles::Write(folder.filePath(u"empty.bmp"_s), {});
    mdlFiles::Write(folder.filePath(u"long.bmp"_s), bytes + QByteArray(2 * 1024 * 1024, '\0'));
    for (const QString& name : {u"huge.bmp"_s, u"text.bmp"_s, u"empty.bmp"_s, u"long.bmp"_s, u"missing.bmp"_s})
        QVERIFY2(CIconSet::FromFile(folder.filePath(name)).isNull(), qPrintable(name));
    QVERIFY(CIconSet::FromFile({}).isNull());
}

QTEST_MAIN(tst_CIconSet)
#include "tst_CIconSet.moc"
