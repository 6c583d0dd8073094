# What every target of the project is compiled with, and where its products are put.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_LIBDIR})
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}" "$ORIGIN")
# A path for the build tree alone would be filled up with empty entries, and an empty entry makes a program load
# libraries from whatever folder it is started in.
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)
if(OMBREL_HOST)
    set(CMAKE_INSTALL_RPATH_USE_LINK_PATH ON)
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-Wno-restrict) # GCC 12 reports overlaps inside std::string that can't happen
endif()
if(OMBREL_WERROR)
    add_compile_options(-Werror)
endif()
if(CMAKE_BUILD_TYPE STREQUAL "Release" AND NOT OMBREL_SANITIZE)
    set(CMAKE_INTERPROCEDURAL_OPTIMIZATION ${OMBREL_LTO})
    # Calls inside a library go straight to their target, exported or not. Data doesn't: a program may hold its copy
    # of it, and has to be the only one (the numbers of the stream facets are told apart by address).
    add_compile_options(-fno-semantic-interposition)
    add_link_options(LINKER:-Bsymbolic-functions)
endif()
if(OMBREL_SANITIZE)
    add_compile_options(-fsanitize=${OMBREL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${OMBREL_SANITIZE})
endif()
if(OMBREL_FUZZ)
    set(ignoreList ${PROJECT_SOURCE_DIR}/fuzz/uninteresting.txt)
    add_compile_options(-fsanitize=fuzzer-no-link -fsanitize-coverage-ignorelist=${ignoreList})
    add_link_options(-fsanitize=fuzzer-no-link)
endif()

# Links a shared library with the given version script, so that it exports what the script names and no more.
function(ombrel_export_only target script)
    target_link_options(${target} PRIVATE "LINKER:--version-script=${CMAKE_CURRENT_SOURCE_DIR}/${script}")
    set_target_properties(${target} PROPERTIES LINK_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${script})
endfunction()
