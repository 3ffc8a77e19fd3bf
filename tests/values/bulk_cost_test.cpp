// A list of 1001 nodes must not cost a string comparison for every pair of node and record.
#include <gtest/gtest.h>
#include <time.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <string>

#include "tests/values/values_support.h"
#include "values/bulk_values.h"

namespace zrcfg_test {
namespace {

constexpr size_t kMostRecords = 255;
constexpr int kRounds = 15;
// A comparison for every pair costs ten times the list on one record and more; looking names up in
// an index costs it hardly more than once. The bound leaves room for slow and busy machines.
constexpr double kMostTimes = 5;

// Names that differ late, so that each comparison would have to read on.
std::string late_name(size_t i) {
  const std::string number = std::to_string(1000 + i);
  return std::string(50, 'n') + number;
}

// The least processor time of several rounds, which no other process can lengthen for long.
double least_seconds(const std::function<void()> &work) {
  double least = std::numeric_limits<double>::max();
  for (int i = 0; i < kRounds; ++i) {
    timespec begin = {};
    timespec end = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &begin);
    work();
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &end);
    least = std::min(least, static_cast<double>(end.tv_sec - begin.tv_sec) +
                                1e-9 * static_cast<double>(end.tv_nsec - begin.tv_nsec));
  }
  return least;
}

class BulkCostTest : public ValuesTest {
 protected:
  // Names of which the object has none: nothing is copied or logged but what the walk costs.
  BulkCostTest() {
    for (size_t i = 0; i < kMostRequests; ++i) {
      requests_.filled(late_name(5000 + i), "old", 1, 9003);
    }
  }

  using Step = std::function<int(ZrcfgObject *, char *, ParamValueEntry *)>;
  double seconds(size_t records, const Step &step) {
    PropertyFile file;
    for (size_t i = 0; i < records; ++i) {
      file.add(late_name(i), "value");
    }
    store(file);
    const OpenedImage image;
    const ValueTable table(image);
    return least_seconds([&] {
      EXPECT_EQ(step(image.get(), table.get(), requests_.list()), 0);
      EXPECT_TRUE(log_texts().empty());
    });
  }

  void expect_cheap(const Step &step) {
    const double few = seconds(1, step);
    const double many = seconds(kMostRecords, step);
    EXPECT_LT(many / few, kMostTimes);
  }

  Requests requests_;
};

TEST_F(BulkCostTest, ReadDoesNotCompareEveryPair) {
  expect_cheap(outputToMultiParamValueList);
}

TEST_F(BulkCostTest, WriteDoesNotCompareEveryPair) {
  expect_cheap(modiMultiParamValues);
}

TEST_F(BulkCostTest, RollBackDoesNotCompareEveryPair) {
  expect_cheap([](ZrcfgObject *image, char *table, ParamValueEntry *list) {
    unsigned char restored = 0;
    return modi_multi_param_values_ext(image, table, list, &restored);
  });
}

}  // namespace
}  // namespace zrcfg_test
