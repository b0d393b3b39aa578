// Finding objects by something that several of them share.
#include <memory>
#include <stdexcept>

#include "Rok/Rok.h"

namespace indexTest {
namespace {

class Port {
 public:
  using BySpeed = Rok::Index<Rok::String, Port, 0x77u>;
  Port(std::string name, const Rok::Ptr<BySpeed>& index, const Rok::String& speed)
      : name(std::move(name)), entry_(index, speed, *this) {}

  std::string name;

 private:
  BySpeed::Entry entry_;
};

class IndexTest : public testing::Test {
 protected:
  Port& add(const std::string& name, const Rok::String& speed) {
    ports_[name] = std::make_unique<Port>(name, index_, speed);
    return *ports_[name];
  }
  std::vector<std::string> of(const Rok::String& speed) const {
    std::vector<std::string> names;
    index_->each(speed, [&](const Port& port) { names.push_back(port.name); });
    return names;
  }

  Rok::Ptr<Port::BySpeed> index_ = Rok::make<Port::BySpeed>();
  std::map<std::string, std::unique_ptr<Port>> ports_;
};
using Names = std::vector<std::string>;

TEST_F(IndexTest, AKeyThatNobodyHasFindsNobody) {
  EXPECT_EQ(of("10G"), Names{});
  add("a", "100G");
  EXPECT_EQ(of("10G"), Names{});
}

TEST_F(IndexTest, OfOneKeyAllAreFoundInTheOrderInWhichTheyCame) {
  add("c", "10G");
  add("b", "100G");
  add("a", "10G");
  add("d", "10G");
  EXPECT_EQ(of("10G"), (Names{"c", "a", "d"}));
  EXPECT_EQ(of("100G"), Names{"b"});
}

TEST_F(IndexTest, WhoGoesIsNotFoundAndTheOthersAre) {
  for (const char* name : {"a", "b", "c", "d"}) add(name, "10G");
  ports_.erase("b");
  EXPECT_EQ(of("10G"), (Names{"a", "c", "d"}));
  ports_.erase("a");
  EXPECT_EQ(of("10G"), (Names{"c", "d"}));
  ports_.erase("d");
  EXPECT_EQ(of("10G"), Names{"c"});
  add("e", "10G");
  EXPECT_EQ(of("10G"), (Names{"c", "e"}));
}

TEST_F(IndexTest, AKeyGoesWithItsLastObject) {
  add("a", "10G");
  add("b", "10G");
  EXPECT_EQ(index_->keys(), 1u);
  ports_.erase("a");
  EXPECT_EQ(index_->keys(), 1u);
  ports_.erase("b");
  EXPECT_EQ(index_->keys(), 0u);
  add("c", "10G");
  EXPECT_EQ(of("10G"), Names{"c"});
}

TEST_F(IndexTest, AVisitMayRemoveTheObjectItIsAt) {
  for (const char* name : {"a", "b", "c"}) add(name, "10G");
  Names visited;
  index_->each("10G", [&](const Port& port) {
    visited.push_back(port.name);
    ports_.erase(std::string(port.name));
  });
  EXPECT_EQ(visited, (Names{"a", "b", "c"}));
  EXPECT_EQ(index_->keys(), 0u);
}

TEST_F(IndexTest, AnObjectThatAVisitRemovesIsNotVisited) {
  for (const char* name : {"a", "b", "c", "d"}) add(name, "10G");
  Names visited;
  index_->each("10G", [&](const Port& port) {
    visited.push_back(port.name);
    ports_.erase(port.name == "a" ? "b" : "a");
  });
  EXPECT_EQ(visited, (Names{"a", "c", "d"}));
}

TEST_F(IndexTest, RemovalsInAnInnerWalkHoldForTheOuterOne) {
  for (const char* name : {"a", "b", "c", "d"}) add(name, "10G");
  Names visited;
  index_->each("10G", [&](const Port& port) {
    visited.push_back(port.name);
    if (port.name != "a") return;
    index_->each("10G", [&](const Port& inner) {
      if (inner.name == "b" || inner.name == "c") ports_.erase(std::string(inner.name));
    });
  });
  EXPECT_EQ(visited, (Names{"a", "d"}));
}

TEST_F(IndexTest, WhenAllGoAndOneComesMidWalkTheWalkEndsAndTheNewOneIsFound) {
  for (const char* name : {"a", "b"}) add(name, "10G");
  Names visited;
  index_->each("10G", [&](const Port& port) {
    visited.push_back(port.name);
    ports_.clear();
    add("new", "10G");
  });
  EXPECT_EQ(visited, Names{"a"});
  EXPECT_EQ(of("10G"), Names{"new"});
}

TEST_F(IndexTest, AnExceptionOfAVisitEndsTheWalkAndLeavesTheIndexInOrder) {
  for (const char* name : {"a", "b"}) add(name, "10G");
  EXPECT_THROW(index_->each("10G", [](const Port&) { throw std::runtime_error("lost carrier"); }),
               std::runtime_error);
  ports_.erase("a");
  EXPECT_EQ(of("10G"), Names{"b"});
}

TEST_F(IndexTest, DescribesItselfByItsName) {
  EXPECT_EQ(index_->fwkType().name, "Index");
  EXPECT_EQ(index_->fwkType().attributeName(130), "");
}

TEST_F(IndexTest, TheIndexLivesAsLongAsSomebodyIsInIt) {
  add("a", "10G");
  Port::BySpeed* index = index_.get();
  index_ = nullptr;
  EXPECT_EQ(index->keys(), 1u);
  EXPECT_GT(index->references(), 0u);
  ports_.clear();
}

}  // namespace
}  // namespace indexTest
