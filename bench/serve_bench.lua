-- wrk: the sample query with its region varying per request, asked of veldra serve
-- (SERVE_TARGET=veldra, with SERVE_TOKEN and SERVE_COMPONENT) or of the Go baseline (go).
local regions = {"NE", "NW", "SE", "SW", "CE", "OS"}
local target = os.getenv("SERVE_TARGET")
local token = os.getenv("SERVE_TOKEN") or ""
local component = os.getenv("SERVE_COMPONENT") or "sales-by-region"
local counter = 0

request = function()
  counter = counter + 1
  local region = regions[counter % #regions + 1]
  if target == "go" then
    return wrk.format("GET", "/rows?region=" .. region .. "&from=2023-01-01")
  end
  return wrk.format("GET", "/api/components/" .. component .. "/rows?%40%40%40Region=%27" .. region .. "%27",
                    { ["Authorization"] = "Bearer " .. token })
end

done = function(summary, latency, requests)
  local errors = summary.errors
  io.write(string.format("RESULT rps=%.1f p99_ms=%.2f errors=%d requests=%d\n",
    summary.requests / (summary.duration / 1e6), latency:percentile(99) / 1000,
    errors.connect + errors.read + errors.write + errors.timeout + errors.status, summary.requests))
end
