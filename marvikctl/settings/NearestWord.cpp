#include "NearestWord.h"

#include <algorithm>
#include <vector>

int NearestWord::distance(const QString& a, const QString& b)
{
    const auto rows = static_cast<std::size_t>(a.size()) + 1;
    const auto columns = static_cast<std::size_t>(b.size()) + 1;
    std::vector<std::vector<int>> cost(rows, std::vector<int>(columns, 0));
    for (std::size_t i = 0; i < rows; ++i)
        cost[i][0] = static_cast<int>(i);
    for (std::size_t j = 0; j < columns; ++j)
        cost[0][j] = static_cast<int>(j);
    const auto same = [&](std::size_t i, std::size_t j) {
        return a.at(static_cast<int>(i) - 1) == b.at(static_cast<int>(j) - 1);
    };
    for (std::size_t i = 1; i < rows; ++i) {
        for (std::size_t j = 1; j < columns; ++j) {
            cost[i][j] = std::min({cost[i - 1][j] + 1, cost[i][j - 1] + 1,
                                   cost[i - 1][j - 1] + (same(i, j) ? 0 : 1)});
            const bool swapped = i > 1 && j > 1 && same(i, j - 1) && same(i - 1, j);
            if (swapped)
                cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
        }
    }
    return cost[rows - 1][columns - 1];
}

QString NearestWord::in(const QStringList& words, const QString& word)
{
    const QString given = word.toLower();
    QString nearest;
    // One error in a short word, and about one in three letters of a long one.
    int best = std::max(2, given.size() / 2);
    for (const QString& each : words) {
        // The beginning of a word is what people type for the whole of it.
        const bool isBeginning = given.size() > 1 && each.startsWith(given);
        const int errors = isBeginning ? 1 : distance(given, each);
        if (errors < best) {
            best = errors;
            nearest = each;
        }
    }
    return nearest;
}
