#include "Rok/GenericIfImpl.h"

namespace genericIfImplTest {
namespace {

struct Hashable {
  std::uint32_t number = 0;
  std::uint32_t hash(std::uint32_t seed) const { return Rok::hashSingleAttr(seed, number); }
};
struct Unhashable {
  static constexpr std::string_view rokTypeName = "Demo::Unhashable";
};

TEST(GenericIfImpl, AValueWithAHashGivesIt) {
  EXPECT_EQ(Rok::GenericIfImpl::hash(7, Hashable{3}), Rok::hashSingleAttr(7, 3u));
  EXPECT_EQ(Rok::GenericIfImpl::hash(7, Velmo::String("edge")),
            Rok::hashSingleAttr(7, Velmo::String("edge")));
}

TEST(GenericIfImpl, AValueWithoutOneThrowsWithItsClassName) {
  try {
    static_cast<void>(Rok::GenericIfImpl::hash(7, Unhashable()));
    FAIL() << "hashed";
  } catch (const Rok::UnhashableException& e) {
    EXPECT_STREQ(e.what(), "values of Demo::Unhashable have no hash");
  }
  EXPECT_THROW(Rok::GenericIfImpl::throwUnhashableException("X"), Rok::Exception);
}

}  // namespace
}  // namespace genericIfImplTest
