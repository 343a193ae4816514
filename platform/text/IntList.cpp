// Lists of integers as text ("1-3,5"): load selections of envelopes and similar lists.
#include "Translator.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace {

/// A text cannot expand to more numbers than this; no model has that many loads.
constexpr int64_t kMaxValues = int64_t{1} << 20;

class IntListParser {
public:
    explicit IntListParser(const std::wstring& text) : m_text(text) {}

    bool Parse(std::vector<int>& out) {
        SkipBlanks();
        if (AtEnd())
            return true;
        for (;;) {
            int64_t first = 0;
            if (!Number(first))
                return false;
            int64_t last = first;
            SkipBlanks();
            if (Peek() == L'-') {
                ++m_pos;
                SkipBlanks();
                if (!Number(last) || last < first)
                    return false;
                SkipBlanks();
            }
            if (last - first + 1 > kMaxValues - static_cast<int64_t>(out.size()))
                return false;
            for (int64_t v = first; v <= last; ++v)
                out.push_back(static_cast<int>(v));
            if (AtEnd())
                return true;
            if (Peek() != L',')
                return false;
            ++m_pos;
            SkipBlanks();
        }
    }

private:
    bool AtEnd() const { return m_pos >= m_text.size(); }
    wchar_t Peek() const { return AtEnd() ? L'\0' : m_text[m_pos]; }
    void SkipBlanks() {
        while (Peek() == L' ' || Peek() == L'\t')
            ++m_pos;
    }
    static bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

    /// An optional minus sign and at least one decimal digit, within the range of int.
    bool Number(int64_t& value) {
        const bool negative = Peek() == L'-';
        if (negative)
            ++m_pos;
        if (!IsDigit(Peek()))
            return false;
        int64_t v = 0;
        while (IsDigit(Peek())) {
            v = v * 10 + (m_text[m_pos++] - L'0');
            if (v > int64_t{std::numeric_limits<int>::max()} + 1)
                return false;
        }
        value = negative ? -v : v;
        return value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max();
    }

    const std::wstring& m_text;
    size_t m_pos = 0;
};

} // namespace

CString ClTranslator::IntArray2String(const CArray<int>& values) {
    std::vector<int> v = values.Vector();
    std::sort(v.begin(), v.end());
    v.erase(std::unique(v.begin(), v.end()), v.end());
    std::wstring text;
    for (size_t i = 0; i < v.size();) {
        size_t j = i;
        while (j + 1 < v.size() && int64_t{v[j + 1]} == int64_t{v[j]} + 1)
            ++j;
        if (!text.empty())
            text += L',';
        text += std::to_wstring(v[i]);
        if (j > i) {
            text += L'-';
            text += std::to_wstring(v[j]);
        }
        i = j + 1;
    }
    return CString(text);
}

bool ClTranslator::String2IntArray(const CString& text, CArray<int>& values) {
    values.RemoveAll();
    std::vector<int> parsed;
    if (!IntListParser(text).Parse(parsed))
        return false;
    std::sort(parsed.begin(), parsed.end());
    parsed.erase(std::unique(parsed.begin(), parsed.end()), parsed.end());
    values.Vector() = std::move(parsed);
    return true;
}
