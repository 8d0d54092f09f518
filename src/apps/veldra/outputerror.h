#pragma once

#include <stdexcept>

// Standard output could not be written (a full disk, a closed pipe); what() says why.
class OutputError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};
