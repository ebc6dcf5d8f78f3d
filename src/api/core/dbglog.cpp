#include "dbglog.h"

std::string dbglog_scopedFunction(std::string const& function, std::string const& category)
{
    return category + ": " + function;
}
