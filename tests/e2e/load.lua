-- Load for wrk: every connection alternates between reading and writing its own counter, and counts
-- what the gateway acknowledged. At the end it prints a line a connection: name, last value written
-- with success, requests, failures.
local threads = {}

function setup(thread)
  thread:set("id", #threads)
  table.insert(threads, thread)
end

function init()
  requests, failures, acknowledged, sent, writing = 0, 0, 0, 0, false
end

function request()
  requests = requests + 1
  writing = requests % 2 == 0
  local path = "/api/v1/misc/counters/load" .. id
  if not writing then
    return wrk.format("GET", requests % 4 == 1 and "/api/v1/wifi/radios/0" or path, wrk.headers)
  end
  sent = sent + 1
  return wrk.format("PUT", path, wrk.headers, tostring(sent))
end

function response(status)
  if writing and (status == 200 or status == 201) then
    acknowledged = sent
  elseif status >= 500 or writing then
    failures = failures + 1
  end
end

function done()
  for _, thread in ipairs(threads) do
    print(string.format("load%d %d %d %d", thread:get("id"), thread:get("acknowledged"),
                        thread:get("requests"), thread:get("failures")))
  end
end
