// Key sets of checked direct mates from the shared corpus: every White first
// move that forces mate within the stipulation, no more and no fewer.
#include "corpus_solving.h"

#include <gtest/gtest.h>

namespace zorvane {
namespace {

TEST(CorpusKeys, TwoMovers) {
    SolveCorpus(1, 2, false);
}
TEST(CorpusKeys, ThreeMovers) {
    SolveCorpus(3, 3, false);
}
TEST(CorpusKeys, FourMovers) {
    SolveCorpus(4, 4, false);
}
TEST(CorpusKeys, TwoAndThreeMoversInSafeMode) {
    SolveCorpus(1, 3, true);
}

} // namespace
} // namespace zorvane
