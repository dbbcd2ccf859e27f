# Shared settings for every target of the project.

# Warnings as the team keeps them: -Wall -Wextra, and errors in CI.
function(lumiscope_target_defaults target)
  target_compile_options(${target} PRIVATE -Wall -Wextra)
  # GCC 12 reports std::string assignments inlined at -O2 as overlapping
  # memcpy calls (-Wrestrict) where there are none; its own later releases
  # dropped the false report.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} PRIVATE -Wno-restrict)
  endif()
  if(LUMISCOPE_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()

# A library of one source folder. Usage:
#   lumiscope_library(NAME SOURCES a.cpp b.cpp LIBS dep1 dep2 [QT])
# QT switches on moc for the folder's Qt classes.
function(lumiscope_library name)
  cmake_parse_arguments(ARG "QT" "" "SOURCES;LIBS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${ARG_LIBS})
  if(ARG_QT)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
  endif()
  lumiscope_target_defaults(${name})
endfunction()

# A program under src/app (built into <build>/bin). Usage: lumiscope_program(NAME SOURCES main.cpp LIBS ...)
function(lumiscope_program name)
  cmake_parse_arguments(ARG "QT" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LIBS})
  # Every program lands in <build>/bin, where the scripts look for it.
  # The sample configuration is found from there too (bin/configs), in an
  # installed tree from <prefix>/share/lumiscope.
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
  if(ARG_QT)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
  endif()
  lumiscope_target_defaults(${name})
endfunction()

# One GoogleTest program registered with CTest. Usage:
#   lumiscope_test(NAME SOURCES a_test.cpp LIBS ... [QT] [TIMEOUT s])
# Every test sees the sample configuration directory in LUMISCOPE_SAMPLE_CONFIG_DIR
# and, for widget tests, the offscreen platform.
function(lumiscope_test name)
  cmake_parse_arguments(ARG "QT" "TIMEOUT" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} GTest::gtest GTest::gmock)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support)
  if(NOT ARG_QT)
    target_link_libraries(${name} PRIVATE GTest::gtest_main)
  else()
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
  endif()
  target_compile_definitions(${name} PRIVATE
    LUMISCOPE_SAMPLE_CONFIG_DIR="${LUMISCOPE_SAMPLE_CONFIG_DIR}"
    LUMISCOPE_BINARY_DIR="${PROJECT_BINARY_DIR}")
  lumiscope_target_defaults(${name})
  add_test(NAME ${name} COMMAND ${name})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 300)
  endif()
  set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT}
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LUMISCOPE_SAMPLE_CONFIG_DIR=${LUMISCOPE_SAMPLE_CONFIG_DIR}")
endfunction()

# Adds every listed sub-folder that already has a CMakeLists.txt, so that
# folders can arrive one at a time.
function(lumiscope_add_folders)
  foreach(folder ${ARGN})
    if(EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/CMakeLists.txt)
      add_subdirectory(${folder})
    endif()
  endforeach()
endfunction()
