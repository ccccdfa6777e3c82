// viewer/mdlThreadOrder.cpp
// Links every message to its parent in ascending order of numbers, then walks the threads without recursion.

#include "viewer/mdlThreadOrder.h"

#include <QHash>

#include <algorithm>
#include <numeric>
#include <tuple>

namespace
{

using mdlThreadOrder::Node;
using mdlThreadOrder::Place;

constexpr int None = -1;

/// The threads as links between nodes: first answer, next answer to the same message, first messages in order.
struct CLinks
{
    std::vector<int> FirstAnswer;
    std::vector<int> NextAnswer;
    std::vector<int> Roots;
};

std::vector<int> ByNumber(const std::vector<Node>& Nodes)
{
    std::vector<int> order(Nodes.size());
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(), [&](int Left, int Right) {
        const CMessageId& left = Nodes[static_cast<std::size_t>(Left)].Id;
        const CMessageId& right = Nodes[static_cast<std::size_t>(Right)].Id;
        return std::tie(left.ID, left.BBS_ID) < std::tie(right.ID, right.BBS_ID);
    });
    return order;
}

CLinks Link(const std::vector<Node>& Nodes)
{
    CLinks links{std::vector<int>(Nodes.size(), None), std::vector<int>(Nodes.size(), None), {}};
    QHash<quint64, int> seen;
    seen.reserve(static_cast<qsizetype>(Nodes.size()));
    for (const int index : ByNumber(Nodes)) {
        const Node& node = Nodes[static_cast<std::size_t>(index)];
        const int parent =
            node.InReplyTo == 0 ? None : seen.value(CMessageId{node.Id.BBS_ID, node.InReplyTo}.Packed(), None);
        seen.insert(node.Id.Packed(), index);
        if (parent == None) {
            links.Roots.push_back(index);
            continue;
        }
        // The newest answer stands directly under its parent.
        int& first = links.FirstAnswer[static_cast<std::size_t>(parent)];
        links.NextAnswer[static_cast<std::size_t>(index)] = first;
        first = index;
    }
    return links;
}

/// Appends the thread that Root begins; Path is working space.
void Walk(int Root, const CLinks& Links, std::vector<int>& Path, std::vector<Place>& Result)
{
    Path.clear();
    int index = Root;
    while (index != None) {
        Result.push_back({index, static_cast<int>(Path.size())});
        int next = Links.FirstAnswer[static_cast<std::size_t>(index)];
        if (next != None)
            Path.push_back(index);
        else if (index != Root)
            next = Links.NextAnswer[static_cast<std::size_t>(index)];
        while (next == None && !Path.empty()) {
            const int parent = Path.back();
            Path.pop_back();
            if (parent != Root)
                next = Links.NextAnswer[static_cast<std::size_t>(parent)];
        }
        index = next;
    }
}

} // namespace

namespace mdlThreadOrder
{

std::vector<Place> Arrange(const std::vector<Node>& Nodes)
{
    const CLinks links = Link(Nodes);
    std::vector<Place> result;
    result.reserve(Nodes.size());
    std::vector<int> path;
    for (const int root : links.Roots)
        Walk(root, links, path, result);
    return result;
}

} // namespace mdlThreadOrder
