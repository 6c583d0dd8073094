#include "support/ProgramGenerator.h"

#include <map>
#include <random>
#include <string_view>
#include <vector>

namespace {

/// What a symbol can become. In a rule a capital letter is a symbol, and so are
///
///     _   a gap where nothing is needed           #   what separates two statements
///     (a space)   a gap where a space is needed   $   the same with a line end in it
///
/// while ` is a plain space and everything else is itself. The first rule of each symbol ends the growth.
const std::map<char16_t, std::vector<std::u16string_view>> rules = {
    {u'_', {u"", u"", u"", u"`", u"``", u"\t", u"`...\n", u"`...`note\n``", u"`...\n%`note\n", u"\t...\r\n"}},
    {u' ', {u"`", u"`", u"```", u"\t", u"`...\n", u"`...`note\n\t", u"`...\n`%{\nnote\n%}\n`"}},
    {u'#', {u"$", u"$", u"$", u";", u",", u"`;`", u",`...\n`", u"`%`note\n%{\n``a\n%}\n``", u";;`,"}},
    {u'$', {u"\n", u"\n", u"\n`", u"\n\n\t", u"`%`note\n", u";\n``", u"\n``%`note\n```", u"\r\n", u"\r`"}},
    // files
    {u'P', {u"B", u"B", u"#BF#B", u"BS", u"function`f$Bfunction y_=_g(I)$B", u"C", u"`!ls\nB"}},
    {u'C', {u"classdef`c#L#end", u"_classdef (sealed,_~_hidden,_access_=_E)_c_<_pkg.base_&_handle#Lend#F"}},
    {u'L',
     {u"", u"properties#Yend#L", u"properties (constant,_~hidden)#Yend#L", u"methods#Tend#L",
      u"methods (static)#Tend#L", u"events#Wend#L", u"enumeration#Zend#L"}},
    {u'Y',
     {u"", u"p#Y", u"p (1,_:) double {positive,_other(1)} =_E#Y", u"p@pkg.base =_E#Y", u"p @ pkg.base#Y",
      u"p {a}#Y"}},
    {u'T', {u"", u"F#T", u"y_=_g_(I)#T", u"g#T", u"[x,_y]_=_get.value(I)#T"}},
    {u'W', {u"", u"changed#W"}},
    {u'Z', {u"", u"red#Z", u"green_(_1,_E_)#Z"}},
    // functions
    {u'F',
     {u"function`f#end", u"function f(I)#UBend", u"function y_=_f_(I)$UBF#Bend", u"function [_]_=_f(I)$UBend",
      u"function [_x_,_y_,]_=_get.value_()$UBend", u"function [x]_=_f$F#end"}},
    {u'I', {u"", u"x", u"_x_,_~_", u"~"}},
    {u'U', {u"", u"arguments$Hend#U", u"arguments (output)$Hend#U"}},
    {u'H',
     {u"", u"x#H", u"x (1,_:) double {positive,_in(x,_1)} =_E#H", u"o_._y double = E#H", u"o_._?_pkg.c#H"}},
    // statements
    {u'B', {u"", u"S#", u"S#B", u"S#B"}},
    {u'S',
     {u"x_=_E",
      u"V_=_E_;",
      u"[_O_]_=_E_;",
      u"[]_=_E",
      u"x",
      u"f_(A)_;",
      u"x + E",
      u"hold``on",
      u"disp`'two`words'`...\n`b;",
      u"load`data`-v",
      u"import`a.b.*`c;",
      u"import`a",
      u"global x y",
      u"persistent x;",
      u"break",
      u"continue",
      u"return",
      u"\n!ls`-l;\n",
      u"if E#Bend",
      u"if(E)x_=_E#Belse#Bend",
      u"if E#Belseif E#Belseif E#Belse#Bend",
      u"while E#Bend",
      u"for x_=_E#Bend",
      u"for (_x_=_E_)_x_=_E#Bend",
      u"parfor x_=_E#Bend",
      u"parfor(_x_=_E_,_E_)#Bend",
      u"spmd#Bend",
      u"spmd_(_E_,_E)#Bend",
      u"try#Bend",
      u"try#Bcatch#Bend",
      u"try`x_=_E#Bcatch e#Bend",
      u"switch E#Kend"}},
    {u'K', {u"", u"case E#BK", u"case E#BK", u"otherwise#B", u"otherwise`x_=_E#B"}},
    {u'V', {u"x", u"x.y", u"x_(A)", u"x{A}", u"x(1).y.z{2}", u"x_._(E)"}},
    {u'O', {u"x", u"N_,_N", u"~_,_N", u"N_,_~_,", u"x y"}},
    {u'N', {u"x", u"x.y", u"x(A)", u"x{A}", u"x(1).y.z{2}", u"x.(E)"}},
    // expressions
    {u'E', {u"x",         u"1",      u"0x1f",   u"0b1u8",  u"2.5e-3i", u"'it''s'",     u"\"a\"",
            u"x.y.z",     u"x_._y",  u"E_+_E",  u"E_-_E",  u"E_*_E",   u"E_./_E",      u"E_\\_E",
            u"E_^_E",     u"E_.^_E", u"E_==_E", u"E_~=_E", u"E_>=_E",  u"E_&&_E",      u"E_&_E",
            u"E_||_E",    u"E_|_E",  u"E_:_E",  u"E:E:E",  u"-_E",     u"~_E",         u"+_E",
            u"(E)'",      u"x.'",    u"x'",     u"@_a.b",  u"?_pkg.c", u"@_(I) E",     u"f@pkg.base(A)",
            u"(_E_)",     u"f_(A)",  u"f(_A_)", u"x{A}",   u"x_{A}",   u"f(x,_n_=_E)", u"x(1)_._y_(A)",
            u"x_._(_E_)", u"[R]",    u"{R}",    u"[_]",    u"{_}",     u"[_R_](1)",    u"{_R_}"}},
    {u'A', {u"", u"E", u"_E_", u"E_,_E", u":", u"end_-_1,_:", u"end"}},
    // matrices, where spaces separate
    {u'R', {u"M", u"M M", u"M_,_M", u"R_;_R", u"R\nR", u"M_,_", u"M_;_", u",M", u"M`%`note\nM", u"R``\n``R"}},
    {u'M',
     {u"x", u"1", u"x.y", u"x'", u"-x", u"'s'", u"f(A)", u"x{A}", u"(E)", u"[R]", u"{R}", u"M_+_M", u"M_*_M",
      u"M - M", u"@f", u"@(I) M", u"f@pkg.base"}},
};

class Generator {
public:
    explicit Generator(std::uint32_t seed) : random(seed) {}

    std::u16string run() {
        expand(u'P', 9);
        return std::move(text);
    }

private:
    void expand(char16_t symbol, int depth) {
        const auto& choices = rules.at(symbol);
        const bool isSpace = symbol < u'A' || symbol == u'_';
        const bool mayGrow = isSpace || (depth > 0 && text.size() < 1500);
        for (const char16_t c : choices[mayGrow ? random() % choices.size() : 0]) {
            if (rules.count(c) != 0) {
                expand(c, depth - 1);
            } else {
                text += c == u'`' ? u' ' : c;
            }
        }
    }

    std::minstd_rand random;
    std::u16string text;
};

} // namespace

std::u16string generateProgram(std::uint32_t seed) {
    return Generator(seed).run();
}
