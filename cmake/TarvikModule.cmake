# tarvik_add_module(TARGET SOURCES file... [NAME name] [VERSION version] [KIND kind [COMPANIONS file...]]
#                   [OUTPUT_DIRECTORY dir] [UNSIGNED])
#
# A module for the client, from C or C++ sources: TARGET.so, without the prefix "lib", hidden symbols but for
# what tarvik/module.h marks as exported. It is built into modules/ of the build tree, or OUTPUT_DIRECTORY.
#
# Where the publisher's private key is known (TARVIK_PRIVATE_KEY_FILE), the module is signed after each link
# under NAME (default: the target's name) and VERSION (default: 1.0), with the signature beside it as
# TARGET.so.sig. With KIND (plugin or hostchecker) it also covers the kind, the platform and the COMPANIONS: full
# paths of files below the output directory that are there before the link. UNSIGNED leaves the signature out. A
# deployment's modules are signed where its key is kept.
function(tarvik_add_module target)
  cmake_parse_arguments(PARSE_ARGV 1 MODULE "UNSIGNED" "NAME;VERSION;KIND;OUTPUT_DIRECTORY" "SOURCES;COMPANIONS")
  if(MODULE_UNPARSED_ARGUMENTS OR NOT MODULE_SOURCES)
    message(FATAL_ERROR
      "tarvik_add_module(${target}): no SOURCES, or unknown arguments: ${MODULE_UNPARSED_ARGUMENTS}")
  endif()
  if(NOT MODULE_NAME)
    set(MODULE_NAME "${target}")
  endif()
  if(NOT MODULE_VERSION)
    set(MODULE_VERSION 1.0)
  endif()
  if(NOT MODULE_OUTPUT_DIRECTORY)
    set(MODULE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/modules")
  endif()

  add_library(${target} MODULE ${MODULE_SOURCES})
  target_link_libraries(${target} PRIVATE tarvik_build_options)
  target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}/sdk/include")
  # A library with symbols that are unique in the process is never unloaded: dlclose would be ignored.
  target_compile_options(${target} PRIVATE $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fno-gnu-unique>)
  set_target_properties(${target} PROPERTIES
    PREFIX ""
    SUFFIX ".so"
    LIBRARY_OUTPUT_DIRECTORY "${MODULE_OUTPUT_DIRECTORY}"
    C_VISIBILITY_PRESET hidden
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)

  set(manifest)
  if(MODULE_KIND)
    set(manifest --kind "${MODULE_KIND}" --platform "$<IF:$<PLATFORM_ID:Darwin>,macos,linux>-x86_64")
  endif()
  foreach(companion IN LISTS MODULE_COMPANIONS)
    list(APPEND manifest --companion "${companion}")
  endforeach()
  if(TARVIK_PRIVATE_KEY_FILE AND NOT MODULE_UNSIGNED)
    # Linked, and so signed, again when the key or the signing tool has changed.
    set_property(TARGET ${target} APPEND PROPERTY
      LINK_DEPENDS "$<TARGET_FILE:tarvik-signmodule>" "${TARVIK_PRIVATE_KEY_FILE}" ${MODULE_COMPANIONS})
    add_dependencies(${target} tarvik-signmodule)
    add_custom_command(TARGET ${target} POST_BUILD
      COMMAND "$<TARGET_FILE:tarvik-signmodule>" sign --key "${TARVIK_PRIVATE_KEY_FILE}"
              --name "${MODULE_NAME}" --version "${MODULE_VERSION}" ${manifest} "$<TARGET_FILE:${target}>"
      BYPRODUCTS "${MODULE_OUTPUT_DIRECTORY}/${target}.so.sig"
      VERBATIM)
  endif()
endfunction()
