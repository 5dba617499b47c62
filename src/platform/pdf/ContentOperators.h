#pragma once

namespace quillfern::pdf {

/// An operator as a number: its bytes, the last one lowest. Operators have at most three.
[[nodiscard]] constexpr unsigned operatorCode(const char* word)
{
    unsigned value = 0;
    for (; *word; ++word)
        value = value << 8 | static_cast<unsigned char>(*word);
    return value;
}

/// How many operands an operator of page content needs at least (ISO 32000-1, annex A); -1 for a word that is
/// no operator.
[[nodiscard]] constexpr int leastOperands(unsigned word)
{
    constexpr auto code = operatorCode;
    switch (word) {
    case code("q"):
    case code("Q"):
    case code("BT"):
    case code("ET"):
    case code("EMC"):
    case code("BI"):
    case code("W"):
    case code("W*"):
    case code("S"):
    case code("s"):
    case code("f"):
    case code("F"):
    case code("f*"):
    case code("B"):
    case code("B*"):
    case code("b"):
    case code("b*"):
    case code("n"):
    case code("h"):
    case code("T*"):
    case code("BX"):
    case code("EX"):
    case code("sc"): // as many as the colour space has, or a pattern's name
    case code("SC"):
    case code("scn"):
    case code("SCN"):
        return 0;
    case code("Tj"):
    case code("TJ"):
    case code("'"):
    case code("Tc"):
    case code("TL"):
    case code("Tr"):
    case code("Ts"):
    case code("Tw"):
    case code("Tz"):
    case code("gs"):
    case code("Do"):
    case code("g"):
    case code("G"):
    case code("cs"):
    case code("CS"):
    case code("sh"):
    case code("w"):
    case code("J"):
    case code("j"):
    case code("M"):
    case code("i"):
    case code("ri"):
    case code("BMC"):
    case code("MP"):
        return 1;
    case code("m"):
    case code("l"):
    case code("Td"):
    case code("TD"):
    case code("Tf"):
    case code("d"):
    case code("BDC"):
    case code("DP"):
    case code("d0"):
        return 2;
    case code("rg"):
    case code("RG"):
    case code("\""):
        return 3;
    case code("re"):
    case code("v"):
    case code("y"):
    case code("k"):
    case code("K"):
        return 4;
    case code("c"):
    case code("cm"):
    case code("Tm"):
    case code("d1"):
        return 6;
    default:
        return -1;
    }
}

} // namespace quillfern::pdf
