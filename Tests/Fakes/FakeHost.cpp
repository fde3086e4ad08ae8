#include "Tests/Fakes/FakeHost.hpp"

namespace ostrel {

FakeHost::FakeHost() = default;
FakeHost::~FakeHost() = default;

}  // namespace ostrel
