// The baseline of bench/serve_bench: what a backend engineer would write instead of veldra
// serve for the sample query, with net/http and database/sql. It answers
// GET /rows?region=NE&from=2023-01-01 with the rows as JSON in veldra's form.
//
//	serve_baseline -driver sqlite3 -dsn 'file:/path/sample.db?mode=ro' -listen 127.0.0.1:0
//	serve_baseline -driver postgres -dsn 'host=/tmp/x port=54329 user=veldra_reader dbname=veldra_sample'
//
// It prints the address it listens on, then serves until killed.
package main

import (
	"database/sql"
	"encoding/json"
	"flag"
	"fmt"
	"log"
	"net"
	"net/http"
	"os"
	"strings"

	_ "github.com/lib/pq"
	_ "github.com/mattn/go-sqlite3"
)

const query = `SELECT regions.name AS Region, customers.segment AS Segment, COUNT(orders.id) AS Orders,
  ROUND(SUM(orders.amount), 2) AS Revenue
FROM %[1]sregions, %[1]scustomers, %[1]sorders
WHERE customers.region_code = regions.code AND orders.customer_id = customers.id
  AND orders.status <> 'cancelled' AND regions.code = %[2]s AND orders.order_date >= %[3]s
GROUP BY regions.name, customers.segment
ORDER BY ROUND(SUM(orders.amount), 2) DESC
LIMIT 10`

func main() {
	driver := flag.String("driver", "sqlite3", "sqlite3 or postgres")
	dsn := flag.String("dsn", "", "data source name")
	listen := flag.String("listen", "127.0.0.1:0", "address to listen on")
	flag.Parse()

	db, err := sql.Open(*driver, *dsn)
	if err != nil {
		log.Fatal(err)
	}
	db.SetMaxIdleConns(64)
	statement := fmt.Sprintf(query, "", "?", "?")
	if *driver == "postgres" {
		statement = fmt.Sprintf(query, "sales.", "$1", "$2")
	}

	http.HandleFunc("/rows", func(w http.ResponseWriter, r *http.Request) {
		region := r.URL.Query().Get("region")
		from := r.URL.Query().Get("from")
		rows, err := db.QueryContext(r.Context(), statement, region, from)
		if err != nil {
			http.Error(w, err.Error(), http.StatusInternalServerError)
			return
		}
		defer rows.Close()
		columns, _ := rows.Columns()
		result := struct {
			Columns   []string        `json:"columns"`
			Rows      [][]interface{} `json:"rows"`
			Truncated bool            `json:"truncated"`
		}{Columns: columns, Rows: [][]interface{}{}}
		for rows.Next() {
			values := make([]interface{}, len(columns))
			pointers := make([]interface{}, len(columns))
			for i := range values {
				pointers[i] = &values[i]
			}
			if err := rows.Scan(pointers...); err != nil {
				http.Error(w, err.Error(), http.StatusInternalServerError)
				return
			}
			for i, v := range values {
				if b, ok := v.([]byte); ok {
					values[i] = string(b)
				}
			}
			result.Rows = append(result.Rows, values)
		}
		if err := rows.Err(); err != nil {
			http.Error(w, err.Error(), http.StatusInternalServerError)
			return
		}
		w.Header().Set("Content-Type", "application/json")
		json.NewEncoder(w).Encode(result)
	})

	listener, err := net.Listen("tcp", *listen)
	if err != nil {
		log.Fatal(err)
	}
	fmt.Println("listening on http://" + strings.TrimSpace(listener.Addr().String()) + "/")
	os.Stdout.Sync()
	log.Fatal(http.Serve(listener, nil))
}
