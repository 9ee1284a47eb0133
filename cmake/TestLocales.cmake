# A bare system has no locale with a decimal comma. The tests get one, made in the build tree and found through
# LOCPATH, which a test sets while it needs it (tests/support/comma_locale.h): glibc leaks where it is always set.

find_program(RQXML_LOCALEDEF localedef REQUIRED)

set(RQXML_TEST_LOCALE_DIR "${PROJECT_BINARY_DIR}/tests/locales")
set(made "${RQXML_TEST_LOCALE_DIR}/de_DE.UTF-8/LC_NUMERIC")

add_custom_command(OUTPUT "${made}"
  COMMAND "${CMAKE_COMMAND}" -E make_directory "${RQXML_TEST_LOCALE_DIR}"
  COMMAND "${RQXML_LOCALEDEF}" -i de_DE -f UTF-8 "${RQXML_TEST_LOCALE_DIR}/de_DE.UTF-8"
  COMMENT "Making the locale de_DE.UTF-8 for the tests"
  VERBATIM)
add_custom_target(rqxml_test_locales ALL DEPENDS "${made}")
