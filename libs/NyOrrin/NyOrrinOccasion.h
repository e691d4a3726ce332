#pragma once

#include <string>
#include <utility>

/** An occasion that an album shows. Value type; texts are UTF-8. */
class NyOrrinOccasion
{
public:
    NyOrrinOccasion(std::string keyword, std::string source, float probability)
        : m_keyword(std::move(keyword))
        , m_source(std::move(source))
        , m_probability(probability)
    {
    }

    /** Stable lower-case English word, such as "wedding"; programs translate it for people. */
    std::string getKeyword() const { return m_keyword; }
    /** What told most of it: "title", "place" or "vision". The calendar only weighs what these say. */
    std::string getSource() const { return m_source; }
    /** 0 to 1. */
    float getProbability() const { return m_probability; }

private:
    std::string m_keyword;
    std::string m_source;
    float m_probability;
};
