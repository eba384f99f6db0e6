#pragma once

#include <QByteArray>
#include <QFile>
#include <QList>

#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

/// Looks for a secret in all memory that this process may write, memory already given back
/// included (the address sanitizer keeps it for a while). Itself it knows the secret only turned
/// inside out.
class MemoryScan
{
public:
    /// `needle` must be a literal: those live in memory that is not searched.
    explicit MemoryScan(const char* needle)
    {
        for (const char* letter = needle; *letter != 0; ++letter)
            m_inverted.push_back(static_cast<char>(~*letter));
    }

    /// A copy of the secret, the caller's to wipe.
    std::string needle() const
    {
        std::string text(m_inverted.size(), '\0');
        for (std::size_t i = 0; i < text.size(); ++i)
            text[i] = static_cast<char>(~m_inverted[i]);
        return text;
    }

    /// How often the secret stands in memory now; -1 when the memory cannot be read.
    int occurrences() const
    {
        const int memory = ::open("/proc/self/mem", O_RDONLY | O_CLOEXEC);
        void* mapped =
            ::mmap(nullptr, blockSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (memory < 0 || mapped == MAP_FAILED)
            return -1;
        auto* block = static_cast<char*>(mapped);
        int found = 0;
        const QList<Region> regions = writableRegions();
        for (const Region& region : regions) {
            // The block shows up among the regions, alone or merged with a neighbour.
            const auto own = reinterpret_cast<quint64>(block);
            found += countIn(memory, {region.first, qMin(region.last, own)}, block);
            found += countIn(memory, {qMax(region.first, own + blockSize), region.last}, block);
        }
        ::munmap(mapped, blockSize);
        ::close(memory);
        return found;
    }

private:
    struct Region
    {
        quint64 first;
        quint64 last;
    };

    static constexpr std::size_t blockSize = 1 << 20;
    // The sanitizer's own bookkeeping: terabytes of address space, next to no memory.
    static constexpr quint64 largestRegion = quint64{1} << 32;

    static QList<Region> writableRegions()
    {
        QFile maps(QStringLiteral("/proc/self/maps"));
        QList<Region> regions;
        if (!maps.open(QIODevice::ReadOnly))
            return regions;
        const QList<QByteArray> lines = maps.readAll().split('\n');
        for (const QByteArray& line : lines) {
            const QList<QByteArray> words = line.split(' ');
            if (words.size() < 2 || !words.at(1).startsWith("rw"))
                continue;
            const QList<QByteArray> ends = words.at(0).split('-');
            const Region region = {ends.at(0).toULongLong(nullptr, 16),
                                   ends.at(1).toULongLong(nullptr, 16)};
            if (region.last - region.first <= largestRegion)
                regions.append(region);
        }
        return regions;
    }

    int countIn(int memory, Region region, char* block) const
    {
        int found = 0;
        const std::size_t overlap = m_inverted.size() - 1;
        std::size_t kept = 0;
        for (quint64 at = region.first; at < region.last;) {
            const std::size_t wanted = qMin<quint64>(blockSize - kept, region.last - at);
            const ssize_t count = ::pread(memory, block + kept, wanted, static_cast<off_t>(at));
            if (count <= 0)
                break;
            const std::size_t size = kept + static_cast<std::size_t>(count);
            for (std::size_t i = 0; i + m_inverted.size() <= size; ++i)
                found += matches(block + i) ? 1 : 0;
            kept = qMin(size, overlap);
            std::memmove(block, block + size - kept, kept);
            at += static_cast<quint64>(count);
        }
        return found;
    }

    bool matches(const char* text) const
    {
        for (std::size_t i = 0; i < m_inverted.size(); ++i) {
            if (text[i] != static_cast<char>(~m_inverted[i]))
                return false;
        }
        return true;
    }

    std::string m_inverted;
};
