#pragma once

#include "tests/support/ArchiveBytes.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace vak::test {

/// An array and a vector that take the same random changes. Array takes and gives ints; one that cannot be
/// stored is only copied.
template <class Array>
class ArrayModel
{
public:
    void Run(int steps)
    {
        for (int i = 0; i < steps && !testing::Test::HasFailure(); ++i) {
            SCOPED_TRACE(i);
            Step();
            Compare(m_array);
        }
    }

private:
    static constexpr bool kIsStored = requires(Array & array) { array.FreeExtra(); };

    int Below(int limit) { return int(m_random() % unsigned(limit)); }

    void Compare(const Array& array)
    {
        ASSERT_EQ(array.GetSize(), int(m_model.size()));
        for (int i = 0; i < array.GetSize(); ++i)
            ASSERT_EQ(array.GetAt(i), m_model[std::size_t(i)]) << i;
    }

    void Insert(int index, std::vector<int> values)
    {
        m_model.resize(std::max(m_model.size(), std::size_t(index)));
        m_model.insert(m_model.begin() + index, values.begin(), values.end());
    }

    void Step()
    {
        const int value = int(m_random());
        const int size = int(m_model.size());
        const int index = Below(size + 4);
        const int inside = Below(size + 1);
        const int removed = std::min(size - inside, Below(200));
        switch (size > 300 ? 0 : Below(10)) {
        case 0:
            m_array.RemoveAt(inside, removed);
            m_model.erase(m_model.begin() + inside, m_model.begin() + inside + removed);
            if constexpr (kIsStored)
                m_array.FreeExtra();
            return;
        case 1:
            EXPECT_EQ(m_array.Add(value), size);
            return m_model.push_back(value);
        case 2:
            m_array.SetAtGrow(index, value);
            m_model.resize(std::size_t(std::max(size, index + 1)));
            m_model[std::size_t(index)] = value;
            return;
        case 3:
            m_array.InsertAt(index, value, 3);
            return Insert(index, {value, value, value});
        case 4:
            m_array.InsertAt(index, &m_other);
            return Insert(m_otherModel.empty() ? 0 : index, m_otherModel);
        case 5:
            m_array.InsertAt(inside, &m_array);
            return Insert(inside, m_model);
        case 6:
            EXPECT_EQ(m_array.Append(m_array), size);
            return Insert(size, m_model);
        case 7:
            m_array.SetSize(index);
            return m_model.resize(std::size_t(index));
        case 8:
            m_other.Copy(m_array);
            break;
        default:
            if constexpr (kIsStored)
                EXPECT_EQ(ReadCause(m_other, StoredBytes(m_array)), -1);
            else
                m_other.Copy(m_array);
        }
        m_otherModel = m_model;
        Compare(m_other);
    }

    std::mt19937 m_random;
    Array m_array, m_other;
    std::vector<int> m_model, m_otherModel;
};

} // namespace vak::test
