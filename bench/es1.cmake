# The scenes in ES 1.1 and in hand-written ES 2, which link whatever EGL and GL libraries the machine has.
find_package(PNG REQUIRED)
find_package(glm REQUIRED)
set(es1 ${CMAKE_CURRENT_LIST_DIR}/es1)
add_library(scene_frame STATIC ${es1}/frame.cpp ${es1}/content.cpp ${es1}/upload.cpp
  ${CMAKE_SOURCE_DIR}/tests/pictures/headless.cpp ${CMAKE_SOURCE_DIR}/tests/pictures/image.cpp)
target_include_directories(scene_frame PUBLIC ${CMAKE_CURRENT_LIST_DIR} ${CMAKE_SOURCE_DIR}/tests)
target_link_libraries(scene_frame PUBLIC PNG::PNG EGL)

add_executable(es1bench ${es1}/es1bench.cpp)
target_link_libraries(es1bench PRIVATE scene_frame GLESv1_CM)
add_executable(es2bench ${es1}/es2bench.cpp ${es1}/es2_program.cpp)
target_link_libraries(es2bench PRIVATE scene_frame GLESv2)

# Runs the two and prints the table.
find_package(Threads REQUIRED)
add_executable(es1table ${es1}/es1table.cpp ${es1}/measure.cpp ${es1}/profile.cpp ${es1}/report.cpp
  ${CMAKE_SOURCE_DIR}/tests/pictures/image.cpp)
target_include_directories(es1table PRIVATE ${CMAKE_CURRENT_LIST_DIR} ${CMAKE_SOURCE_DIR}/tests)
target_link_libraries(es1table PRIVATE PNG::PNG Threads::Threads)
