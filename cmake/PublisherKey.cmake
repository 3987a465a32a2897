# The publisher's public key that the client is built with.
#
# TARVIK_PUBLISHER_KEY names the PEM file (SubjectPublicKeyInfo, RSA 2048). Unset, a development
# key pair is generated once in the build tree; its private half signs the sample modules.
# Sets TARVIK_PUBLIC_KEY_FILE, and TARVIK_PRIVATE_KEY_FILE where the private half is known.
set(TARVIK_PUBLISHER_KEY "" CACHE FILEPATH "The publisher's public key (PEM, SubjectPublicKeyInfo, RSA 2048)")

if(TARVIK_PUBLISHER_KEY)
  if(NOT EXISTS "${TARVIK_PUBLISHER_KEY}")
    message(FATAL_ERROR "TARVIK_PUBLISHER_KEY: no such file: ${TARVIK_PUBLISHER_KEY}")
  endif()
  set(TARVIK_PUBLIC_KEY_FILE "${TARVIK_PUBLISHER_KEY}")
  set(TARVIK_PRIVATE_KEY_FILE "")
  message(STATUS "Publisher key: ${TARVIK_PUBLISHER_KEY}")
else()
  set(TARVIK_PUBLIC_KEY_FILE "${PROJECT_BINARY_DIR}/devkey/public.pem")
  set(TARVIK_PRIVATE_KEY_FILE "${PROJECT_BINARY_DIR}/devkey/private.pem")
  if(NOT EXISTS "${TARVIK_PRIVATE_KEY_FILE}" OR NOT EXISTS "${TARVIK_PUBLIC_KEY_FILE}")
    find_program(TARVIK_OPENSSL openssl REQUIRED)
    file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/devkey")
    execute_process(
      COMMAND "${TARVIK_OPENSSL}" genpkey -quiet -algorithm RSA -pkeyopt rsa_keygen_bits:2048
              -out "${TARVIK_PRIVATE_KEY_FILE}"
      COMMAND_ERROR_IS_FATAL ANY)
    file(CHMOD "${TARVIK_PRIVATE_KEY_FILE}" PERMISSIONS OWNER_READ OWNER_WRITE)
    execute_process(
      COMMAND "${TARVIK_OPENSSL}" pkey -in "${TARVIK_PRIVATE_KEY_FILE}" -pubout -out "${TARVIK_PUBLIC_KEY_FILE}"
      COMMAND_ERROR_IS_FATAL ANY)
  endif()
  message(STATUS "Publisher key: a development key in ${PROJECT_BINARY_DIR}/devkey (TARVIK_PUBLISHER_KEY is not set; "
                 "do not deploy this build)")
endif()

file(READ "${TARVIK_PUBLIC_KEY_FILE}" TARVIK_PUBLIC_KEY_PEM)
if(NOT TARVIK_PUBLIC_KEY_PEM MATCHES "^-----BEGIN PUBLIC KEY-----\n")
  message(FATAL_ERROR "${TARVIK_PUBLIC_KEY_FILE} is not a public key in SubjectPublicKeyInfo PEM form")
endif()
string(LENGTH "${TARVIK_PUBLIC_KEY_PEM}" TARVIK_PUBLIC_KEY_LENGTH)
if(NOT TARVIK_PUBLIC_KEY_LENGTH EQUAL 451)
  message(FATAL_ERROR "${TARVIK_PUBLIC_KEY_FILE} is not an RSA key of 2048 bits")
endif()
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${TARVIK_PUBLIC_KEY_FILE}")
