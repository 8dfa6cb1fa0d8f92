# GRAPHICSOBJECTS_SANITIZE=ON builds everything with AddressSanitizer and UndefinedBehaviorSanitizer;
# any undefined behaviour stops the program. GRAPHICSOBJECTS_SANITIZER_FLAGS holds the flags, for
# builds of other projects against this one (the package test).
option(GRAPHICSOBJECTS_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
set(GRAPHICSOBJECTS_SANITIZER_FLAGS "")
if(GRAPHICSOBJECTS_SANITIZE)
  set(GRAPHICSOBJECTS_SANITIZER_FLAGS -fsanitize=address,undefined -fno-sanitize-recover=undefined
      -fno-omit-frame-pointer)
  add_compile_options(${GRAPHICSOBJECTS_SANITIZER_FLAGS})
  add_link_options(-fsanitize=address,undefined)
endif()
