// cmake/TavoraPch.h
// The headers that nearly every file reads, compiled once per room.

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <vector>
