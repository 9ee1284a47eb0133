# A bare system has no locale with a decimal comma and none with characters of two bytes. The tests get them, made in
# the build tree and found through LOCPATH, which a test sets while it needs it (tests/support/test_locale.h): glibc
# leaks where it is always set.

find_program(RQXML_LOCALEDEF localedef REQUIRED)

set(RQXML_TEST_LOCALE_DIR "${PROJECT_BINARY_DIR}/tests/locales")
set(RQXML_TEST_LOCALES "")

# rqxml_add_test_locale(name input charmap): localedef fails on mere warnings (a yen sign for the backslash), so that
# whether it has left the file decides.
function(rqxml_add_test_locale name input charmap)
  set(made "${RQXML_TEST_LOCALE_DIR}/${name}/LC_NUMERIC")
  add_custom_command(OUTPUT "${made}"
    COMMAND "${CMAKE_COMMAND}" -E make_directory "${RQXML_TEST_LOCALE_DIR}"
    COMMAND "${RQXML_LOCALEDEF}" -c --quiet -i ${input} -f ${charmap} "${RQXML_TEST_LOCALE_DIR}/${name}"
            || "${CMAKE_COMMAND}" -E compare_files "${made}" "${made}"
    COMMENT "Making the locale ${name} for the tests"
    VERBATIM)
  set(RQXML_TEST_LOCALES ${RQXML_TEST_LOCALES} "${made}" PARENT_SCOPE)
endfunction()

rqxml_add_test_locale(de_DE.UTF-8 de_DE UTF-8)
rqxml_add_test_locale(en_US en_US ISO-8859-1)
rqxml_add_test_locale(tr_TR.ISO-8859-9 tr_TR ISO-8859-9)
rqxml_add_test_locale(ja_JP.SJIS ja_JP SHIFT_JIS)
rqxml_add_test_locale(zh_CN.GBK zh_CN GBK)
rqxml_add_test_locale(zh_TW.BIG5 zh_TW BIG5)
rqxml_add_test_locale(ko_KR.EUC-KR ko_KR EUC-KR)

add_custom_target(rqxml_test_locales ALL DEPENDS ${RQXML_TEST_LOCALES})
