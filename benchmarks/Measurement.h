#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <functional>
#include <string>
#include <utility>
#include <vector>

/** Compares several forms of the same work by running them in turn, so that what else the machine does hits all alike. */
class Measurement
{
public:
    /** Runs the form and returns the time of its part that counts, in ms. */
    using Form = std::function<double()>;

    void add(const std::string &name, Form form) { m_forms.push_back({name, std::move(form), {}}); }

    void run(int rounds)
    {
        for (Entry &entry : m_forms)
            entry.form();
        for (int round = 0; round < rounds; ++round) {
            for (Entry &entry : m_forms)
                entry.times.push_back(entry.form());
        }
    }

    double median(const std::string &name) const
    {
        for (const Entry &entry : m_forms) {
            if (entry.name != name)
                continue;
            std::vector<double> times = entry.times;
            std::sort(times.begin(), times.end());
            return times.at(times.size() / 2);
        }
        return 0;
    }

    /** Prints the medians and what they are of the reference's. */
    void print(const std::string &reference) const
    {
        const double unit = median(reference);
        for (const Entry &entry : m_forms)
            std::printf("%-52s %10.2f ms   %8.3f\n", entry.name.c_str(), median(entry.name), median(entry.name) / unit);
        std::fflush(stdout);
    }

    /** Wall clock time, in ms. */
    template <class Work>
    static double milliseconds(Work &&work)
    {
        const auto start = std::chrono::steady_clock::now();
        work();
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    }

    /** Time that this thread had the processor, in ms: what to look at while the machine is busy with other things. */
    template <class Work>
    static double processorMilliseconds(Work &&work)
    {
        const auto now = [] {
            timespec time{};
            ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
            return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
        };
        const double start = now();
        work();
        return now() - start;
    }

private:
    struct Entry
    {
        std::string name;
        Form form;
        std::vector<double> times;
    };

    std::vector<Entry> m_forms;
};
