# The tool alone needs CLI11 and nlohmann-json. Without them the libraries are still built; the tests need the tool.

find_package(CLI11 CONFIG QUIET)
find_package(nlohmann_json 3 CONFIG QUIET)

set(RQXML_MISSING_FOR_TOOL "")
foreach(package CLI11 nlohmann_json)
  if(NOT ${package}_FOUND)
    list(APPEND RQXML_MISSING_FOR_TOOL ${package})
  endif()
endforeach()

if(RQXML_MISSING_FOR_TOOL)
  list(JOIN RQXML_MISSING_FOR_TOOL " and " RQXML_MISSING_FOR_TOOL)
  if(RQXML_BUILD_TESTS)
    message(FATAL_ERROR "The tests run the command-line tool, which needs ${RQXML_MISSING_FOR_TOOL} "
                        "(Debian: libcli11-dev nlohmann-json3-dev; scripts/setup.sh installs them).")
  endif()
  message(NOTICE "-- The command-line tool is left out: it needs ${RQXML_MISSING_FOR_TOOL} "
                 "(Debian: libcli11-dev nlohmann-json3-dev). The libraries are built without it.")
  set(RQXML_BUILD_TOOL OFF)
endif()
