# Installs the project into an empty prefix, moves that, and builds examples/embed against it as any user
# would: once through the CMake package, once through pkg-config. Both programs have to print the expected text.
# Then builds the library again, with the installed host in the place of the project's own, and the first program
# has to print the same with that.
#
#   cmake -D sourceDir=... -D buildDir=... -D workDir=... -D compiler=... -P InstallTest.cmake
cmake_minimum_required(VERSION 3.25)

set(prefix ${workDir}/prefix)
set(embed ${sourceDir}/examples/embed)
file(READ ${CMAKE_CURRENT_LIST_DIR}/expected.omb expected)

function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT status EQUAL 0)
        list(JOIN ARGV " " command)
        message(FATAL_ERROR "${command}\nended with ${status}:\n${output}")
    endif()
endfunction()

function(expect_output program)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE errors)
    if(NOT status EQUAL 0 OR NOT output STREQUAL expected)
        message(FATAL_ERROR "${program} ended with ${status} and printed:\n${output}${errors}\nExpected:\n${expected}")
    endif()
endfunction()

file(REMOVE_RECURSE ${workDir})
run(${CMAKE_COMMAND} --install ${buildDir} --prefix ${workDir}/staged)
file(RENAME ${workDir}/staged ${prefix})

run(${CMAKE_COMMAND} -G Ninja -S ${embed} -B ${workDir}/cmake -D CMAKE_PREFIX_PATH=${prefix}
    -D CMAKE_CXX_COMPILER=${compiler})
run(${CMAKE_COMMAND} --build ${workDir}/cmake)
expect_output(${workDir}/cmake/embed)
expect_output(${workDir}/cmake/embed ${CMAKE_CURRENT_LIST_DIR}/expected.omb)
foreach(path nope.omb ${workDir})
    execute_process(COMMAND ${workDir}/cmake/embed ${path} RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE errors)
    if(NOT status EQUAL 1 OR NOT errors MATCHES "^embed: .")
        message(FATAL_ERROR "embed ${path} ended with ${status} and printed:\n${errors}")
    endif()
endforeach()

file(GLOB_RECURSE pkgConfigFile ${prefix}/*/ca_formatting.pc)
cmake_path(GET pkgConfigFile PARENT_PATH pkgConfigDir)
cmake_path(GET pkgConfigDir PARENT_PATH libraryDir)
set(ENV{PKG_CONFIG_PATH} ${pkgConfigDir})
execute_process(COMMAND pkg-config --cflags --libs ca_formatting OUTPUT_VARIABLE usage
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(usage UNIX_COMMAND "${usage}")
run(${compiler} -std=c++20 ${embed}/main.cpp -o ${workDir}/embed ${usage} -Wl,-rpath,${libraryDir})
expect_output(${workDir}/embed)

run(${CMAKE_COMMAND} -G Ninja -S ${sourceDir} -B ${workDir}/other-host -D OMBREL_HOST=ombrel_host
    -D CMAKE_PREFIX_PATH=${prefix} -D CMAKE_CXX_COMPILER=${compiler} -D BUILD_TESTING=OFF
    -D OMBREL_BENCH=OFF -D CMAKE_BUILD_TYPE=Debug)
run(${CMAKE_COMMAND} --build ${workDir}/other-host --target ca_formatting ca_formatting_devtools)
set(ENV{LD_LIBRARY_PATH} ${workDir}/other-host/lib)
expect_output(${workDir}/cmake/embed)
