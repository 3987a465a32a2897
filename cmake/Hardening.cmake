# What stands in the way of whoever has found a fault: for programs and modules alike, through tarvik_build_options.
# The test "hardening" reads it off them. Sanitizers check more, and some of this disturbs them.
include(CheckPIESupported)
check_pie_supported() # without it CMAKE_POSITION_INDEPENDENT_CODE does not reach the link of programs

# Indices and iterators of the standard library; debugging builds and sanitizers are to find such faults first.
target_compile_definitions(tarvik_build_options INTERFACE _GLIBCXX_ASSERTIONS)

if(NOT TARVIK_SANITIZE)
  set(optimised "$<CONFIG:Release,RelWithDebInfo,MinSizeRel>")
  target_compile_options(tarvik_build_options INTERFACE -fstack-protector-strong
    "$<${optimised}:-U_FORTIFY_SOURCE>" "$<${optimised}:-D_FORTIFY_SOURCE=3>")
  # Neither is known on macOS, whose linker also does by itself what the others are asked for.
  if(NOT APPLE)
    target_compile_options(tarvik_build_options INTERFACE -fstack-clash-protection)
    target_link_options(tarvik_build_options INTERFACE "LINKER:-z,relro,-z,now,-z,noexecstack")
  endif()
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
    target_compile_options(tarvik_build_options INTERFACE -fcf-protection=full)
  endif()
endif()
