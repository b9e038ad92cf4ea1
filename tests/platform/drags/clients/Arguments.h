// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <map>
#include <string>

// A command line of "--name value" pairs.
class Arguments {
public:
    Arguments(int argc, char **argv)
    {
        for (int i = 1; i + 1 < argc; i += 2)
            values[argv[i]] = argv[i + 1];
    }

    std::string text(const std::string &name, const std::string &otherwise) const
    {
        const auto found = values.find(name);
        return found == values.end() ? otherwise : found->second;
    }

    int number(const std::string &name, int otherwise) const
    {
        const auto found = values.find(name);
        return found == values.end() ? otherwise : std::atoi(found->second.c_str());
    }

private:
    std::map<std::string, std::string> values;
};
