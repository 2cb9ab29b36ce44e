// Parses the lines of a file and does nothing with them: what a replay takes at least.
#include <simdjson.h>

#include <algorithm>
#include <cstdio>
#include <string_view>

int main(int argc, char** argv) {
    simdjson::padded_string text;
    if (argc != 2 || simdjson::padded_string::load(argv[1]).get(text) != simdjson::SUCCESS) {
        std::fprintf(stderr, "parse_lines FILE\n");
        return 2;
    }
    simdjson::dom::parser parser;
    std::string_view rest(text.data(), text.size());
    while (!rest.empty()) {
        auto const line = rest.substr(0, rest.find('\n'));
        if (parser.parse(line.data(), line.size(), false).error() != simdjson::SUCCESS) {
            return 1;
        }
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    }
    return 0;
}
