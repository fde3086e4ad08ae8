# Headers that nearly every file includes are read once and not by each file: that is a fifth of the time to build. The
# presets tsan and release build without (CMAKE_DISABLE_PRECOMPILE_HEADERS), which finds the file that forgot to
# include what it uses.
set(standardHeaders
    <algorithm>
    <chrono>
    <expected>
    <filesystem>
    <functional>
    <map>
    <memory>
    <optional>
    <set>
    <string>
    <string_view>
    <utility>
    <vector>)

# Libraries, and test programs, whose code is made for another place in memory: each kind has headers of its own.
file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/Precompiled.cpp" CONTENT "")
add_library(Precompiled OBJECT "${CMAKE_BINARY_DIR}/Precompiled.cpp")
target_link_libraries(Precompiled PRIVATE OstrelOptions)
target_precompile_headers(Precompiled PRIVATE ${standardHeaders})

file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/PrecompiledTest.cpp" CONTENT "int main() {}\n")
add_executable(PrecompiledTest "${CMAKE_BINARY_DIR}/PrecompiledTest.cpp")
target_link_libraries(PrecompiledTest PRIVATE OstrelOptions TestOptions GTest::gtest)
target_precompile_headers(PrecompiledTest PRIVATE ${standardHeaders} <fstream> <gtest/gtest.h>)
