# Install rules, the CMake package ca_formatting and the pkg-config file.
