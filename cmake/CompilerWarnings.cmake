# Warnings for our own targets only; Qt's headers are system headers.
function(graphicsobjects_warnings target)
  if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    target_compile_options(${target} PRIVATE -Wall -Wextra)
  endif()
endfunction()
