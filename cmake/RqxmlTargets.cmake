# What every target of this project is compiled with. Warnings stay private to the project.

if(RQXML_SANITIZE AND RQXML_SANITIZE_THREADS)
  message(FATAL_ERROR "RQXML_SANITIZE and RQXML_SANITIZE_THREADS exclude each other")
endif()

set(RQXML_SANITIZE_FLAGS "")
if(RQXML_SANITIZE)
  set(RQXML_SANITIZE_FLAGS -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
elseif(RQXML_SANITIZE_THREADS)
  set(RQXML_SANITIZE_FLAGS -fsanitize=thread)
endif()

function(rqxml_configure target)
  target_compile_features(${target} PRIVATE cxx_std_20)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} PRIVATE -Wno-restrict)  # with -O3 it warns of the runtime's own strings, wrongly
  endif()
  if(RQXML_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  target_compile_options(${target} PRIVATE ${RQXML_SANITIZE_FLAGS})
  target_link_options(${target} PRIVATE ${RQXML_SANITIZE_FLAGS})
endfunction()
