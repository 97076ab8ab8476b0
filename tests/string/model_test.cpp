// Model-based test: random sequences of edits applied to an ICStringUnique, an ICStringShared
// (with copies held aside that must never change) and an ICStringView that starts out viewing
// foreign text (which must never change), and to a plain std::string that models the same
// semantics on ASCII text with unit positions. All agree after every step.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include <ic/string/chain.h>
#include <ic/string/ic_string.h>

#include "edit_model.h"

namespace ic {
namespace {

using test::EditRun;

class Model {
 public:
  explicit Model(uint32_t seed) : _rng(seed) {}

  std::string RandomText(int maxLength) { return test::ModelText(*this, maxLength); }
  int Pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(_rng); }

 private:
  std::mt19937 _rng;
};

template <class T>
class ModelTest : public ::testing::Test {};
using NarrowShapes = ::testing::Types<ICStringUnique, ICStringShared, ICStringView>;
TYPED_TEST_SUITE(ModelTest, NarrowShapes);

TYPED_TEST(ModelTest, RandomEditsAgreeWithTheModel) {
  for (uint32_t seed : {1u, 2u, 3u, 42u, 1234u, 99991u}) {
    SCOPED_TRACE(seed);
    Model model(seed);
    EditRun<TypeParam, Model> run(model, "start text\r\nwith ab and xy");
    for (int step = 0; step < 400; ++step)
      ASSERT_EQ(run.Step(), "") << "step " << step;
    EXPECT_GT(run.Changes(), 120);
    EXPECT_GT(run.Longest(), 60u);
    std::printf("seed %u: %d changing steps, longest text %zu\n", seed, run.Changes(),
                run.Longest());
  }
}

}  // namespace
}  // namespace ic
