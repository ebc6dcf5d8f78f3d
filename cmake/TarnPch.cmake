# Most of a file's compile time goes to the headers of Qt, the platform and
# the test framework, which nearly every file of a target parses again. Each
# large target compiles them once. The tests share one set between them,
# which holds only while their compile flags and definitions are alike: a
# test that needs definitions of its own gets a set of its own
# (tarn_add_test). GCC refuses a set that doesn't match, and -Werror makes
# that refusal fail the build rather than go unnoticed.
option(TARN_PCH "Precompile the headers that nearly every file of a target parses" ON)

function(tarn_precompile target)
  if(TARN_PCH)
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()
