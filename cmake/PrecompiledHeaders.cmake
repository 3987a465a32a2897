# The headers that a unit spends most of its compile time on, read once for each target: a quarter less time for a build
# with sanitizers. For builds that are made only to run tests, because one without it tells whether each unit includes
# what it uses.
option(TARVIK_PRECOMPILE_HEADERS "Read the library's and the toolkit's headers once for each target" OFF)

# tarvik_precompile(TARGET HEADER...): HEADERs in angle brackets; nothing unless TARVIK_PRECOMPILE_HEADERS.
function(tarvik_precompile target)
  if(TARVIK_PRECOMPILE_HEADERS)
    target_precompile_headers(${target} PRIVATE
      ${ARGN} <algorithm> <chrono> <functional> <memory> <mutex> <string> <vector>)
    # gcc takes what it has precompiled for no system's headers any more, and warns of what its optimiser imagines there.
    target_compile_options(${target} PRIVATE "$<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds;-Wno-restrict;\
-Wno-stringop-overflow;-Wno-stringop-overread>")
  endif()
endfunction()
