#pragma once
// Errors raised by the framework containers instead of undefined behaviour.
#include <stdexcept>
#include <string>

class CInvalidArgException : public std::invalid_argument {
public:
    explicit CInvalidArgException(const std::string& what = "invalid argument")
        : std::invalid_argument(what) {}
};

class CMemoryException : public std::runtime_error {
public:
    CMemoryException() : std::runtime_error("out of memory") {}
};
