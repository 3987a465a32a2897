# The publisher's public keys that the client is built with.
#
# TARVIK_PUBLISHER_KEY names their PEM files (SubjectPublicKeyInfo, RSA 2048), parted by ";": a module that any of
# them verifies is the publisher's, so that a new key can come before the old one goes. Unset, a development key pair
# is generated once in the build tree; its private half signs the sample modules.
# Sets TARVIK_PUBLIC_KEY_FILE, the first of them, TARVIK_PRIVATE_KEY_FILE where its private half is known, and
# TARVIK_PUBLIC_KEYS_SOURCE, the keys as C++ initialisers.
set(TARVIK_PUBLISHER_KEY "" CACHE FILEPATH "The publisher's public keys (PEM, SubjectPublicKeyInfo, RSA 2048)")

if(TARVIK_PUBLISHER_KEY)
  set(public_key_files "${TARVIK_PUBLISHER_KEY}")
  set(TARVIK_PRIVATE_KEY_FILE "")
  message(STATUS "Publisher key: ${TARVIK_PUBLISHER_KEY}")
else()
  set(public_key_files "${PROJECT_BINARY_DIR}/devkey/public.pem")
  set(TARVIK_PRIVATE_KEY_FILE "${PROJECT_BINARY_DIR}/devkey/private.pem")
  if(NOT EXISTS "${TARVIK_PRIVATE_KEY_FILE}" OR NOT EXISTS "${public_key_files}")
    find_program(TARVIK_OPENSSL openssl REQUIRED)
    file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/devkey")
    execute_process(
      COMMAND "${TARVIK_OPENSSL}" genpkey -quiet -algorithm RSA -pkeyopt rsa_keygen_bits:2048
              -out "${TARVIK_PRIVATE_KEY_FILE}"
      COMMAND_ERROR_IS_FATAL ANY)
    file(CHMOD "${TARVIK_PRIVATE_KEY_FILE}" PERMISSIONS OWNER_READ OWNER_WRITE)
    execute_process(
      COMMAND "${TARVIK_OPENSSL}" pkey -in "${TARVIK_PRIVATE_KEY_FILE}" -pubout -out "${public_key_files}"
      COMMAND_ERROR_IS_FATAL ANY)
  endif()
  message(STATUS "Publisher key: a development key in ${PROJECT_BINARY_DIR}/devkey (TARVIK_PUBLISHER_KEY is not set; "
                 "do not deploy this build)")
endif()

list(GET public_key_files 0 TARVIK_PUBLIC_KEY_FILE)
set(TARVIK_PUBLIC_KEYS_SOURCE "")
foreach(file IN LISTS public_key_files)
  if(NOT EXISTS "${file}")
    message(FATAL_ERROR "TARVIK_PUBLISHER_KEY: no such file: ${file}")
  endif()
  file(READ "${file}" pem)
  if(NOT pem MATCHES "^-----BEGIN PUBLIC KEY-----\n")
    message(FATAL_ERROR "${file} is not a public key in SubjectPublicKeyInfo PEM form")
  endif()
  string(LENGTH "${pem}" length)
  if(NOT length EQUAL 451)
    message(FATAL_ERROR "${file} is not an RSA key of 2048 bits")
  endif()
  string(APPEND TARVIK_PUBLIC_KEYS_SOURCE "    R\"pem(${pem})pem\",\n")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${file}")
endforeach()
