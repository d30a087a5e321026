#pragma once

#include <functional>

class GRGroceryDatabase;

inline constexpr int BenchStoreCount = 8;
inline constexpr int BenchCategoryCount = 40;
inline constexpr int BenchItemCount = 10000;

// The same generated list on every run: 10,000 items in 40 categories and 8 stores, random
// aisles (special ones included), about half of them needed, a manual category order.
void BuildBenchDatabase(GRGroceryDatabase &lists);
// The median time of operation over repetitions runs, prepare running untimed before each.
double MedianMs(int repetitions, const std::function<void()> &prepare, const std::function<void()> &operation);
