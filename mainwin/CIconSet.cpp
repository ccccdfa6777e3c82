// mainwin/CIconSet.cpp
// The program's pictures as icons: painted as vectors at the size and pixel ratio they are asked for.

#include "mainwin/CIconSet.h"

#include "mainwin/mdlPictures.h"
#include "app/Path.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QImageReader>
#include <QPainter>
#include <QPalette>

namespace
{

constexpr qint64 MaxFileSize = 1024 * 1024;
constexpr int MaxSide = 256;

class CPaintedIcon : public QIconEngine
{
public:
    explicit CPaintedIcon(const mdlPictures::Picture& Source)
        : m_source(Source)
    {}

    void paint(QPainter* Painter, const QRect& Place, QIcon::Mode Mode, QIcon::State) override
    {
        Painter->save();
        Painter->setRenderHint(QPainter::Antialiasing);
        if (Mode == QIcon::Disabled)
            Painter->setOpacity(Painter->opacity() * 0.35);
        const int side = qMin(Place.width(), Place.height());
        Painter->translate(Place.x() + (Place.width() - side) / 2.0, Place.y() + (Place.height() - side) / 2.0);
        Painter->scale(side / mdlPictures::Side, side / mdlPictures::Side);
        m_source.Draw(*Painter, mdlPictures::ColorsFor(QGuiApplication::palette()));
        Painter->restore();
    }

    QPixmap pixmap(const QSize& Size, QIcon::Mode Mode, QIcon::State State) override
    {
        QPixmap picture(Size);
        picture.fill(Qt::transparent); // the base class paints onto whatever is in the memory
        QPainter painter(&picture);
        paint(&painter, picture.rect(), Mode, State);
        return picture;
    }

    QIconEngine* clone() const override { return new CPaintedIcon(m_source); }

private:
    mdlPictures::Picture m_source;
};

bool IsBounded(const QSize& Size) { return !Size.isEmpty() && Size.width() <= MaxSide && Size.height() <= MaxSide; }

} // namespace

QStringList CIconSet::Names()
{
    QStringList names;
    for (const auto& picture : mdlPictures::All())
        names.append(picture.Name.toString());
    return names;
}

QIcon CIconSet::Picture(const QString& Name)
{
    for (const auto& picture : mdlPictures::All()) {
        if (picture.Name == Name)
            return QIcon(new CPaintedIcon(picture));
    }
    return {};
}

QIcon CIconSet::FromFile(const QString& FileName)
{
    QFile file(mdlPath::DiskPath(FileName));
    if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly) || file.size() > MaxFileSize)
        return {};
    QImageReader reader(&file, "bmp");
    if (!IsBounded(reader.size())) // the header is read here, no pixel yet
        return {};
    const QImage image = reader.read();
    return IsBounded(image.size()) ? QIcon(QPixmap::fromImage(image)) : QIcon();
}
