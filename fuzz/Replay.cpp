// fuzz/Replay.cpp
// Runs a fuzz target over its corpus and over seeded mutations of it, where there is no libFuzzer.

#include "fuzz/Demand.h"

#include <QByteArrayList>
#include <QDirIterator>
#include <QFile>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <random>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr unsigned Seed = 2002;
constexpr qsizetype LongestInput = 4 * 1024;
constexpr qsizetype LongestBase = 1024; // of a table of statements a part is enough

QByteArray g_input; // what is run, for the one who looks into a crash

/// Leaves the input on stderr as bytes that can be put into a file of the corpus.
extern "C" void ShowInput(int Signal)
{
    const char* const title = "\ninput of the crash:\n";
    [[maybe_unused]] auto written = write(STDERR_FILENO, title, std::strlen(title));
    written = write(STDERR_FILENO, g_input.constData(), static_cast<std::size_t>(g_input.size()));
    std::signal(Signal, SIG_DFL);
    std::raise(Signal);
}

void Run(QByteArray Input)
{
    g_input = std::move(Input);
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(g_input.constData()),
                           static_cast<std::size_t>(g_input.size()));
}

/// The files at Path, in the order of their names, so that mutations are the same everywhere.
QByteArrayList ReadFiles(const QString& Path)
{
    QStringList names;
    for (QDirIterator walk(Path, QDir::Files, QDirIterator::Subdirectories); walk.hasNext();)
        names << walk.next();
    names.sort();
    QByteArrayList contents;
    for (const QString& name : names) {
        QFile file(name);
        Demand(file.open(QIODevice::ReadOnly), "a corpus file can be read");
        contents << file.readAll();
    }
    return contents;
}

/// Makes new inputs out of the corpus: pieces moved, doubled, dropped, swapped between files, bytes changed.
class CMutator
{
public:
    explicit CMutator(const QByteArrayList& Corpus)
        : m_corpus(Corpus)
    {}

    QByteArray Next()
    {
        const QByteArray& whole = Any();
        QByteArray input = whole.mid(Below(whole.size() - LongestBase), LongestBase);
        for (qsizetype changes = 1 + Below(6); changes > 0; --changes)
            Change(input);
        return input.left(LongestInput);
    }

private:
    qsizetype Below(qsizetype Limit)
    {
        return Limit <= 1 ? 0 : static_cast<qsizetype>(m_random() % static_cast<quint32>(Limit));
    }

    const QByteArray& Any() { return m_corpus[Below(m_corpus.size())]; }

    /// A short piece of any file, mostly a word.
    QByteArray Piece()
    {
        const QByteArray& from = Any();
        return from.mid(Below(from.size()), 1 + Below(Below(3) == 0 ? 60 : 8));
    }

    void Change(QByteArray& Input)
    {
        const qsizetype place = Below(Input.size() + 1);
        switch (Below(7)) {
        case 0:
            Input.insert(place, Piece());
            break;
        case 1: {
            const QByteArray piece = Piece();
            Input.replace(place, std::min(piece.size(), Input.size() - place), piece);
            break;
        }
        case 2:
            Input.remove(place, 1 + Below(20));
            break;
        case 3:
            Input.insert(place, Input.mid(Below(Input.size()), 1 + Below(40)));
            break;
        case 4:
            if (place < Input.size())
                Input[place] = static_cast<char>(Below(256));
            break;
        case 5:
            Input.truncate(place);
            break;
        default:
            Input.insert(place, QByteArray(1 + Below(300), static_cast<char>(32 + Below(95))));
        }
    }

    const QByteArrayList& m_corpus;
    std::mt19937 m_random{Seed};
};

} // namespace

/// replay COUNT FOLDER…: every file below the folders, then COUNT mutations of them. Always the same ones.
int main(int argc, char** argv)
{
    QByteArrayList corpus;
    for (int i = 2; i < argc; ++i)
        corpus << ReadFiles(QFile::decodeName(argv[i]));
    if (argc < 3 || corpus.isEmpty()) {
        std::fprintf(stderr, "replay COUNT FOLDER...\n");
        return 2;
    }
    for (const int signal : {SIGABRT, SIGSEGV, SIGFPE})
        std::signal(signal, ShowInput);
    Run({});
    for (const QByteArray& file : corpus)
        Run(file);
    CMutator mutator(corpus);
    const int count = std::atoi(argv[1]);
    for (int i = 0; i < count; ++i)
        Run(mutator.Next());
    std::printf("%d files, %d mutations\n", static_cast<int>(corpus.size()), count);
    return 0;
}
