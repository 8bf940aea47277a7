// The row table stays findable whatever collision chains erasures cut.

#include "tree/MetadataViewRowTable.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <vector>

using zephmetadataui::MetadataViewRowTable;

TEST(MetadataViewRowTableTest, AgreesWithAMapThroughSetsErasuresAndClear)
{
    // Addresses from one array, as rows made one after another would be.
    std::vector<int> rows(5000);
    MetadataViewRowTable<int, int> table;
    std::map<int const*, int> expected;
    std::mt19937 random(7);
    for (int round = 0; round < 3; ++round)
    {
        // Room made ahead, in the middle of a life, keeps every entry.
        if (round == 1)
            table.reserve(table.size() + 20000);
        for (int i = 0; i < 20000; ++i)
        {
            int const* const key = &rows[random() % rows.size()];
            if (random() % 3 == 0)
            {
                table.erase(key);
                expected.erase(key);
            }
            else
            {
                table.set(key, i);
                expected[key] = i;
            }
        }
        ASSERT_EQ(expected.size(), table.size());
        for (int const& row : rows)
        {
            auto const found = table.find(&row);
            auto const wanted = expected.find(&row); // values are never -1
            ASSERT_EQ(wanted == expected.end() ? -1 : wanted->second,
                      found == table.end() ? -1 : found->second);
        }
        std::map<int const*, int> visited;
        for (auto const& entry : table)
            EXPECT_TRUE(visited.emplace(entry.first, entry.second).second) << "visited twice";
        EXPECT_EQ(expected, visited);
    }

    table.clear();
    EXPECT_TRUE(table.begin() == table.end());
    table.set(&rows[1], 5);
    EXPECT_EQ(5, table.find(&rows[1])->second);
    table.erase(nullptr);
    EXPECT_EQ(1u, table.size());
}
