#include "runner/Script.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace bonkora::runner {
namespace {

constexpr std::string_view blanks = " \t";
constexpr std::string_view whiteSpace = " \t\r\n";

class Parser {
  public:
    explicit Parser(std::string_view theScript) : script(theScript) {}

    ShellCommand statement() {
        skip(whiteSpace);
        const std::size_t start = position;
        words({"do", "shell", "script"}, "Expected do shell script and a text in double quotes.");
        ShellCommand command;
        command.text = literal();
        std::size_t end = position;
        skip(blanks);
        if (!atEnd() && whiteSpace.find(script[position]) == std::string_view::npos) {
            words({"with", "administrator", "privileges"},
                  "Expected with administrator privileges or the end of the script.");
            command.withAdministratorPrivileges = true;
            end = position;
        }
        skip(whiteSpace);
        if (!atEnd()) {
            fail("Expected the end of the script.");
        }
        command.range = range(start, end);
        return command;
    }

  private:
    bool atEnd() const { return position == script.size(); }

    void skip(std::string_view characters) {
        position = std::min(script.find_first_not_of(characters, position), script.size());
    }

    // The word that begins here, up to white space or a double quote.
    std::string_view word() const {
        const std::size_t end = script.find_first_of(" \t\r\n\"", position);
        return script.substr(position, end - position);
    }

    void words(std::initializer_list<std::string_view> expected, const char* otherwise) {
        for (const std::string_view next : expected) {
            skip(blanks);
            if (word() != next) {
                fail(otherwise);
            }
            position += next.size();
        }
    }

    std::string literal() {
        skip(blanks);
        if (atEnd() || script[position] != '"') {
            fail("Expected a text in double quotes.");
        }
        ++position;
        std::string text;
        while (!atEnd() && script[position] != '"') {
            text += script[position] == '\\' ? escape() : script[position];
            ++position;
        }
        if (atEnd()) {
            fail("Expected the double quote that ends the text.");
        }
        ++position;
        return text;
    }

    // Leaves the position on the last character of the escape.
    char escape() {
        static constexpr std::string_view names = "\"\\nrt";
        static constexpr std::string_view meanings = "\"\\\n\r\t";
        const std::size_t which =
            position + 1 < script.size() ? names.find(script[position + 1]) : names.npos;
        if (which == names.npos) {
            fail("Expected \", \\, n, r or t after the backslash.");
        }
        ++position;
        return meanings[which];
    }

    [[noreturn]] void fail(const char* message) const {
        throw SyntaxError{range(position, position + word().size()), message};
    }

    ScriptRange range(std::size_t start, std::size_t end) const {
        return {characters(start), characters(end)};
    }

    // How many characters begin before that byte.
    std::size_t characters(std::size_t byte) const {
        return static_cast<std::size_t>(
            std::count_if(script.begin(), script.begin() + static_cast<std::ptrdiff_t>(byte),
                          [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
    }

    const std::string_view script;
    std::size_t position = 0;  // in bytes
};

}  // namespace

const std::string_view usage =
    "usage: osascript -e 'do shell script \"COMMAND\" [with administrator privileges]'\n"
    "Several -e texts are the lines of one script.\n";

std::optional<std::string> scriptFromArguments(const std::vector<std::string_view>& arguments) {
    if (arguments.empty() || arguments.size() % 2 != 0) {
        return std::nullopt;
    }
    std::string script;
    for (std::size_t i = 0; i < arguments.size(); i += 2) {
        if (arguments[i] != "-e") {
            return std::nullopt;
        }
        script += i > 0 ? "\n" : "";
        script += arguments[i + 1];
    }
    return script;
}

platform::Result<ShellCommand, SyntaxError> parseScript(std::string_view script) {
    try {
        return Parser(script).statement();
    } catch (SyntaxError& error) {
        return tl::unexpected(std::move(error));
    }
}

}  // namespace bonkora::runner
