# What every target of the tree is compiled with: link it PRIVATE.
add_library(tarvik_build_options INTERFACE)
target_compile_features(tarvik_build_options INTERFACE cxx_std_20)
target_compile_options(tarvik_build_options INTERFACE -Wall -Wextra -Wshadow -Wconversion
  "$<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>" -Werror "-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=")
target_include_directories(tarvik_build_options INTERFACE
  "${PROJECT_SOURCE_DIR}/libs" "${PROJECT_SOURCE_DIR}/apps" "${PROJECT_SOURCE_DIR}/sdk/include")
include(Hardening)

# Sanitizers reach every target, third-party headers included, so that a container that
# crosses a library boundary is laid out alike on both sides.
if(TARVIK_SANITIZE)
  add_compile_options("-fsanitize=${TARVIK_SANITIZE}" -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options("-fsanitize=${TARVIK_SANITIZE}")
endif()

# The name that chooses among name_linux.cpp and name_mac.cpp.
if(APPLE)
  set(TARVIK_PLATFORM mac)
else()
  set(TARVIK_PLATFORM linux)
endif()
