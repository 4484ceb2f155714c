# Install test: `cmake --install` of this build folder into a scratch DESTDIR,
# the installed programs run from there, and groff's check of both manual pages
# (skipped when groff is not installed). Building it builds both programs.
find_program(KSMAN_GROFF_EXECUTABLE groff)
set(ks_groff "")
if(KSMAN_GROFF_EXECUTABLE)
  set(ks_groff "${KSMAN_GROFF_EXECUTABLE}")
endif()

ks_add_test(InstallTest SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/InstallTest.cpp LIBS ks_testsupport)
target_compile_definitions(InstallTest PRIVATE
  KS_CMAKE_COMMAND="${CMAKE_COMMAND}"
  KS_BUILD_DIR="${CMAKE_BINARY_DIR}"
  KS_MAN_DIR="${PROJECT_SOURCE_DIR}/man"
  KS_GROFF_PATH="${ks_groff}")
add_dependencies(InstallTest KSManCMD KSManUtil)
