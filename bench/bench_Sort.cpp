// bench/bench_Sort.cpp
// Sorting a list of 100,000 messages by a text column against std::sort over collation keys made beforehand: at most 2
// times, for subjects of which most are alike, for subjects of which none are, and for bodies.

#include "app/Settings.h"
#include "bench/support/CRatioReporter.h"
#include "bench/support/Samples.h"
#include "platform/text/Fold.h"
#include "viewer/CMessageList.h"
#include "viewer/mdlColumns.h"

#include <QCoreApplication>
#include <QRandomGenerator>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
constexpr int MessageCount = 100'000;

enum Sample { Alike, Different, Bodies };

/// Text of two to four words; texts begin alike often and go on differently, as those of a board do.
QString MakeText(QRandomGenerator& Random)
{
    static const QStringList words{u"印刷"_s,   u"プリンター"_s, u"メール"_s,   u"の設定"_s,     u"について"_s,
                                   u"ＣＰＵ"_s, u"おすすめ"_s,   u"質問です"_s, u"Re: "_s,       u"ソフト"_s,
                                   u"表計算"_s, u"教えて"_s,     u"ｲﾝｽﾄｰﾙ"_s,   u"ありがとう"_s, u"漢字"_s,
                                   u"(^_^)"_s,  u"2002年"_s,     u"【報告】"_s};
    QString text = Random.bounded(2) == 0 ? u"Re: "_s : QString();
    for (int count = Random.bounded(2, 5); count > 0; --count)
        text += words[Random.bounded(words.size())];
    return text + QString::number(Random.bounded(100'000));
}

QString TextOf(const CMessage& Msg, QRandomGenerator& Random, Sample Kind)
{
    switch (Kind) {
    case Different:
        return MakeText(Random);
    case Bodies:
        return u"> "_s + MakeText(Random) + u"\r\n"_s + Msg.Body;
    default:
        return Msg.Subject;
    }
}

std::vector<CMessageItem> MakeItems(Sample Kind)
{
    QRandomGenerator random(20020115);
    std::vector<CMessageItem> items(MessageCount);
    for (int i = 0; i < MessageCount; ++i) {
        CMessage& message = items[std::size_t(i)].Message;
        message = mdlSamples::MakeMessage(3, i + 1);
        (Kind == Bodies ? message.Body : message.Subject) = TextOf(message, random, Kind);
    }
    return items;
}

int ColumnOf(Sample Kind) { return Kind == Bodies ? mdlColumns::Body : mdlColumns::Subject; }

template<Sample Kind> CMessageList& List()
{
    static Settings option;
    static CMessageList list(option, mdlColumns::BoardHeaders());
    if (list.Count() == 0)
        list.Fill(MakeItems(Kind), {});
    return list;
}

template<Sample Kind> void SortList(benchmark::State& State)
{
    CMessageList& list = List<Kind>();
    for (auto _ : State) {
        State.PauseTiming();
        list.Sort(mdlColumns::ID, CMessageList::Order::Descending);
        State.ResumeTiming();
        list.Sort(ColumnOf(Kind), CMessageList::Order::Ascending);
    }
    if (text::CompareText(list.Text(0, ColumnOf(Kind)), list.Text(MessageCount - 1, ColumnOf(Kind))) >= 0)
        State.SkipWithError("the list is not sorted");
}

template<Sample Kind> void SortKeys(benchmark::State& State)
{
    CMessageList& list = List<Kind>();
    list.Sort(mdlColumns::ID, CMessageList::Order::Descending);
    std::vector<QByteArray> ready;
    for (int row = 0; row < MessageCount; ++row)
        ready.push_back(text::SortKey(list.Text(row, ColumnOf(Kind))));
    for (auto _ : State) {
        State.PauseTiming();
        std::vector<QByteArray> keys = ready;
        State.ResumeTiming();
        std::sort(keys.begin(), keys.end());
        benchmark::DoNotOptimize(keys.data());
    }
}

void BM_SortAlike(benchmark::State& State) { SortList<Alike>(State); }
void BM_KeysAlike(benchmark::State& State) { SortKeys<Alike>(State); }
void BM_SortDifferent(benchmark::State& State) { SortList<Different>(State); }
void BM_KeysDifferent(benchmark::State& State) { SortKeys<Different>(State); }
void BM_SortBodies(benchmark::State& State) { SortList<Bodies>(State); }
void BM_KeysBodies(benchmark::State& State) { SortKeys<Bodies>(State); }
BENCHMARK(BM_SortAlike)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(9);
BENCHMARK(BM_KeysAlike)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(9);
BENCHMARK(BM_SortDifferent)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(9);
BENCHMARK(BM_KeysDifferent)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(9);
BENCHMARK(BM_SortBodies)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(9);
BENCHMARK(BM_KeysBodies)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(9);
} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return RunWithRatios(argc, argv,
                         {{"BM_SortAlike", {{"BM_KeysAlike"}}, 2.0},
                          {"BM_SortDifferent", {{"BM_KeysDifferent"}}, 2.0},
                          {"BM_SortBodies", {{"BM_KeysBodies"}}, 2.0}});
}
